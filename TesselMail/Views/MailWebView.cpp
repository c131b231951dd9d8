#include "TesselMail/Views/MailWebView.h"

#include "MailCore/Rendering/MailSecurity.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/DisplayText.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace TesselMail {
namespace {

constexpr const char* rulesIdentifier = "TesselMail.LocalOnly.v2";
constexpr const char* copyLinkAction = "copy-link";

ObjectRef<WebKitWebView> makeView(WebKitNetworkSession* session) {
    const auto settings = ObjectRef<WebKitSettings>::adopt(webkit_settings_new_with_settings(
        "enable-javascript-markup", FALSE,                  // the page's scripts; ours are apart from them
        "javascript-can-open-windows-automatically", FALSE, //
        "javascript-can-access-clipboard", FALSE,           //
        "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER, //
        "enable-hyperlink-auditing", FALSE,                                        //
        "enable-fullscreen", FALSE,                                                //
        "enable-media", FALSE,                                                     //
        "enable-webgl", FALSE,                                                     //
        "enable-dns-prefetching", FALSE,                                           //
        "enable-page-cache", FALSE,                                                //
        "enable-html5-database", FALSE,                                            //
        "enable-html5-local-storage", FALSE,                                       //
        "enable-back-forward-navigation-gestures", FALSE,                          //
        "enable-developer-extras", FALSE, nullptr));
    return ObjectRef<WebKitWebView>::retain(WEBKIT_WEB_VIEW(
        g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, "settings", settings.get(), nullptr)));
}

// A folder of this run's own for the compiled rules, which are of no use to anybody else.
std::string makeRulesFolder() {
    g_mkdir_with_parents(g_get_user_cache_dir(), 0700);
    std::string path = std::string(g_get_user_cache_dir()) + "/tessel-mail-rules-XXXXXX";
    return g_mkdtemp(path.data()) ? path : std::string();
}

MailWebCoordinator::Navigation navigationOf(WebKitPolicyDecision* decision) {
    WebKitNavigationAction* const action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const char* const address = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    MailWebCoordinator::Navigation navigation{.kind = MailWebCoordinator::Navigation::Kind::userAction,
                                              .address = address ? address : ""};
    switch (webkit_navigation_action_get_navigation_type(action)) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
        navigation.kind = MailWebCoordinator::Navigation::Kind::linkActivated;
        break;
    case WEBKIT_NAVIGATION_TYPE_OTHER: navigation.kind = MailWebCoordinator::Navigation::Kind::other; break;
    default: break;
    }
    return navigation;
}

} // namespace

MailWebView::MailWebView(AppModel& model)
    : model_(model), session_(ObjectRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral())),
      view_(makeView(session_.get())), page_(view_), link_(*this, model.preferences()),
      copyLink_(Gio::SimpleAction::create(copyLinkAction, Glib::VARIANT_TYPE_STRING)),
      self_(std::make_shared<MailWebView*>(this)),
      coordinator_(
          page_,
          [this](const std::string& address, MailCore::UUID, PageRectangle place) {
              showLink(address, place);
          },
          [this](std::optional<MailCore::UUID> identity, const Text& explanation) {
              model_.readingViewFailed(identity, model_.preferences().text(explanation));
          }) {
    configure();
    Gtk::Widget* const view = Glib::wrap(GTK_WIDGET(view_.get()));
    view->set_hexpand(true);
    view->set_vexpand(true);
    set_child(*view);

    target_.set_halign(Gtk::Align::START);
    target_.set_valign(Gtk::Align::END);
    target_.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    target_.add_css_class("link-target");
    target_.set_can_target(false);
    target_.set_visible(false);
    add_overlay(target_);

    copyLink_->signal_activate().connect(sigc::mem_fun(*this, &MailWebView::copyLink));
    showTexts();
    compileRules();
}

MailWebView::~MailWebView() {
    *self_ = nullptr;
    coordinator_.retire();
    g_signal_handlers_disconnect_by_data(view_.get(), this);
    unset_child();
    if (rulesFolder_.empty()) return;
    std::error_code ignored; // usually gone already
    std::filesystem::remove_all(rulesFolder_, ignored);
}

void MailWebView::configure() {
    WebKitWebView* const view = view_.get();
    g_signal_connect(
        view, "decide-policy",
        G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                       MailWebView* self) -> gboolean { return self->decide(decision, type); }),
        this);
    g_signal_connect(view, "load-changed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, MailWebView* self) {
                         // A load that failed is told as finished, too.
                         if (event == WEBKIT_LOAD_STARTED) self->loadFailed_ = false;
                         if (event == WEBKIT_LOAD_FINISHED && !self->loadFailed_)
                             self->coordinator_.finishedLoading(self->page_.navigation());
                     }),
                     this);
    g_signal_connect(view, "load-failed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char*, GError* error,
                                    MailWebView* self) -> gboolean {
                         self->loadFailed_ = true;
                         self->coordinator_.failedLoading(
                             g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
                             g_error_matches(error, WEBKIT_POLICY_ERROR,
                                             WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE));
                         return TRUE; // no error page
                     }),
                     this);
    g_signal_connect(view, "web-process-terminated",
                     G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason, MailWebView* self) {
                         self->coordinator_.processTerminated();
                     }),
                     this);
    g_signal_connect(view, "mouse-target-changed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitHitTestResult* hit, guint, MailWebView* self) {
                         self->pointAt(hit);
                     }),
                     this);
    g_signal_connect(view, "context-menu",
                     G_CALLBACK(+[](WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult* hit,
                                    MailWebView* self) -> gboolean {
                         self->prepareMenu(menu, hit);
                         return webkit_context_menu_get_n_items(menu) == 0;
                     }),
                     this);
    g_signal_connect(view, "create", G_CALLBACK(+[](WebKitWebView*, WebKitNavigationAction*, MailWebView*) {
                         return static_cast<GtkWidget*>(nullptr); // no other windows
                     }),
                     this);
    g_signal_connect(session_.get(), "download-started",
                     G_CALLBACK(+[](WebKitNetworkSession*, WebKitDownload* download, gpointer) {
                         webkit_download_cancel(download);
                     }),
                     nullptr);
    g_signal_connect(
        view, "permission-request",
        G_CALLBACK(+[](WebKitWebView*, WebKitPermissionRequest* request, MailWebView*) -> gboolean {
            webkit_permission_request_deny(request);
            return TRUE;
        }),
        this);
}

// Nothing is loaded before the rules that block the network and the file system are in force.
void MailWebView::compileRules() {
    rulesFolder_ = makeRulesFolder();
    if (rulesFolder_.empty()) return coordinator_.rulesInstalled(false);
    rules_ = ObjectRef<WebKitUserContentFilterStore>::adopt(
        webkit_user_content_filter_store_new(rulesFolder_.c_str()));
    GBytes* const source = g_bytes_new_static(MailCore::MailSecurity::contentRules.data(),
                                              MailCore::MailSecurity::contentRules.size());
    auto waiting = std::make_unique<std::shared_ptr<MailWebView*>>(self_);
    webkit_user_content_filter_store_save(
        rules_.get(), rulesIdentifier, source, nullptr,
        [](GObject*, GAsyncResult* result, gpointer data) noexcept {
            const std::unique_ptr<std::shared_ptr<MailWebView*>> owned(
                static_cast<std::shared_ptr<MailWebView*>*>(data));
            if (**owned) (**owned)->rulesCompiled(result);
        },
        waiting.release());
    g_bytes_unref(source);
}

void MailWebView::rulesCompiled(GAsyncResult* result) {
    WebKitUserContentFilter* const filter =
        webkit_user_content_filter_store_save_finish(rules_.get(), result, nullptr);
    if (filter) {
        webkit_user_content_manager_add_filter(webkit_web_view_get_user_content_manager(view_.get()), filter);
        webkit_user_content_filter_unref(filter);
    }
    // The rules stay mapped; their file has served.
    std::error_code ignored;
    std::filesystem::remove_all(rulesFolder_, ignored);
    coordinator_.rulesInstalled(filter != nullptr);
}

void MailWebView::update(bool dark, bool interactive) {
    const std::uint32_t paper = MailWebCoordinator::paperColor(dark);
    const GdkRGBA colour{static_cast<float>(paper >> 16 & 0xFF) / 255,
                         static_cast<float>(paper >> 8 & 0xFF) / 255, static_cast<float>(paper & 0xFF) / 255,
                         1};
    webkit_web_view_set_background_color(view_.get(), &colour);
    if (!*model_.rendered || !*model_.message) {
        target_.set_visible(false);
        coordinator_.setInteractive(false);
        return;
    }
    coordinator_.show({.identity = *model_.selectionVersion,
                       .rendered = *model_.rendered,
                       .plain = (*model_.message)->plain,
                       .dark = dark,
                       .scale = model_.preferences().readingScale(),
                       .paperRGB = paper},
                      interactive);
}

void MailWebView::showTexts() {
    gtk_accessible_update_property(GTK_ACCESSIBLE(view_.get()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   model_.preferences().text(Texts::messageBody).c_str(), -1);
}

bool MailWebView::decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
    bool allowed = false;
    if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION)
        allowed = coordinator_.allows(navigationOf(decision));
    else if (type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION)
        // A link with a target of its own is a click like any other; no window opens.
        coordinator_.allows(navigationOf(decision));
    else if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE)
        allowed = coordinator_.allowsResponse(webkit_response_policy_decision_is_main_frame_main_resource(
            WEBKIT_RESPONSE_POLICY_DECISION(decision)));
    allowed ? webkit_policy_decision_use(decision) : webkit_policy_decision_ignore(decision);
    return true;
}

void MailWebView::pointAt(WebKitHitTestResult* hit) {
    const char* const uri = webkit_hit_test_result_get_link_uri(hit);
    const auto address = uri ? coordinator_.linkBehind(uri) : std::nullopt;
    target_.set_visible(address.has_value());
    if (address) target_.set_text(displayed(*address, 300));
}

// What the menu offers by default would open, download or reload; only copying makes sense here.
void MailWebView::prepareMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit) {
    webkit_context_menu_remove_all(menu);
    const char* const uri = webkit_hit_test_result_get_link_uri(hit);
    if (const auto address = uri ? coordinator_.linkBehind(uri) : std::nullopt)
        webkit_context_menu_append(menu, webkit_context_menu_item_new_from_gaction(
                                             G_ACTION(copyLink_->gobj()),
                                             model_.preferences().text(Texts::copyLink).c_str(),
                                             g_variant_new_string(address->c_str())));
    if (webkit_hit_test_result_context_is_selection(hit))
        webkit_context_menu_append(
            menu, webkit_context_menu_item_new_from_stock_action(WEBKIT_CONTEXT_MENU_ACTION_COPY));
    webkit_context_menu_append(
        menu, webkit_context_menu_item_new_from_stock_action(WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL));
}

void MailWebView::copyLink(const Glib::VariantBase& address) {
    const auto text = Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(address);
    get_clipboard()->set_text(text.get());
}

void MailWebView::showLink(const std::string& address, PageRectangle place) {
    const auto whole = [](double value) { return static_cast<int>(std::lround(value)); };
    const PageRectangle bounds = page_.bounds();
    const double left = std::max(place.x, 0.0);
    const double top = std::max(place.y, 0.0);
    const double right = std::min(place.x + place.width, bounds.width);
    const double bottom = std::min(place.y + place.height, bounds.height);
    link_.show(address, Gdk::Rectangle(whole(left), whole(top), std::max(whole(right - left), 1),
                                       std::max(whole(bottom - top), 1)));
}

} // namespace TesselMail
