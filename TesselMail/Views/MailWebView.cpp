#include "TesselMail/Views/MailWebView.h"

#include "MailCore/Rendering/LinkText.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/Wrapping.h"

#include <cmath>

namespace TesselMail {
namespace {

constexpr const char* copyLinkAction = "copy-link";
constexpr int mostTargetLines = 3;

// The web view would keep the focus once it has it.
void letFocusLeave(void* widgetClass, void*) {
    GTK_WIDGET_CLASS(widgetClass)->focus = [](GtkWidget* widget, GtkDirectionType) -> gboolean {
        GtkWidget* const view = gtk_overlay_get_child(GTK_OVERLAY(widget));
        return view && !gtk_widget_has_focus(view) && gtk_widget_grab_focus(view);
    };
}

// An anchor whose address is refused stays as text, and so should look like it. The page's stylesheet knows
// no such anchors; the message's own style of it goes before this one.
void styleRefusedLinks(WebKitWebView* view) {
    constexpr const char* style = "a:not([href]){color:inherit}a:not([href]):hover{text-decoration:none}";
    WebKitUserStyleSheet* const sheet = webkit_user_style_sheet_new(
        style, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME, WEBKIT_USER_STYLE_LEVEL_AUTHOR, nullptr, nullptr);
    webkit_user_content_manager_add_style_sheet(webkit_web_view_get_user_content_manager(view), sheet);
    webkit_user_style_sheet_unref(sheet);
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

MailWebView::MailWebView(AppModel& model, std::unique_ptr<LockedWebView> locked)
    : Glib::ObjectBase("TesselMailWebView"), Glib::ExtraClassInit(letFocusLeave), model_(model),
      locked_(std::move(locked)), view_(ObjectRef<WebKitWebView>::retain(locked_->view())), page_(view_),
      link_(*this, model.preferences()),
      copyLink_(Gio::SimpleAction::create(copyLinkAction, Glib::VARIANT_TYPE_STRING)),
      coordinator_(
          page_,
          [this](const std::string& address, MailCore::UUID, PageRectangle place) {
              showLink(address, place);
          },
          [this](std::optional<MailCore::UUID> identity, const Phrase& explanation) {
              model_.readingViewFailed(identity, explanation);
          },
          [this] {
              target_.set_visible(false); // of a page that is gone
              signalShown_.emit();
          }) {
    configure();
    styleRefusedLinks(view_.get());
    Gtk::Widget* const view = Glib::wrap(GTK_WIDGET(view_.get()));
    view->set_hexpand(true);
    view->set_vexpand(true);
    set_child(*view);

    target_.set_halign(Gtk::Align::START);
    target_.set_valign(Gtk::Align::END);
    // The host stands in front, and is never what is cut.
    target_.set_wrap(true);
    target_.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    target_.set_lines(mostTargetLines);
    target_.set_ellipsize(Pango::EllipsizeMode::END);
    target_.set_xalign(0);
    breakWithoutHyphens(target_);
    target_.add_css_class("link-target");
    Adwaita::makeLive(target_, Adwaita::Live::status);
    target_.set_can_target(false);
    target_.set_visible(false);
    add_overlay(target_);

    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE); // before the web view
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) { return press(key, modifiers); }, false);
    view->add_controller(keys);
    const auto focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([self = alive_.handle()] {
        if (self) self->target_.set_visible(false); // it is told while the view goes, too
    });
    view->add_controller(focus);
    link_.signalLeft().connect(sigc::mem_fun(*this, &MailWebView::focusText));
    copyLink_->signal_activate().connect(sigc::mem_fun(*this, &MailWebView::copyLink));
    showTexts();
    locked_->whenReady([this](bool installed) {
        coordinator_.rulesInstalled(installed);
        if (!installed) signalShown_.emit();
    });
}

MailWebView::~MailWebView() {
    alive_.end();
    coordinator_.retire();
    g_signal_handlers_disconnect_by_data(view_.get(), this);
    unset_child();
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
                         if (event == WEBKIT_LOAD_STARTED) {
                             self->loadFailed_ = false;
                             self->loading_ = self->page_.navigation();
                         }
                         if (event == WEBKIT_LOAD_FINISHED && !self->loadFailed_)
                             self->coordinator_.finishedLoading(self->loading_);
                     }),
                     this);
    g_signal_connect(view, "load-failed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char*, GError* error,
                                    MailWebView* self) -> gboolean {
                         self->loadFailed_ = true;
                         if (self->loading_ == 0) return TRUE; // nobody's page
                         self->coordinator_.failedLoading(
                             g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
                             g_error_matches(error, WEBKIT_POLICY_ERROR,
                                             WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE));
                         return TRUE; // no error page
                     }),
                     this);
    g_signal_connect(view, "web-process-terminated",
                     G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason, MailWebView* self) {
                         self->target_.set_visible(false);
                         if (self->loading_ != 0) self->coordinator_.processTerminated();
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
}

std::uint32_t MailWebView::showPaper(bool dark) {
    const std::uint32_t paper = MailWebCoordinator::paperColor(dark);
    const GdkRGBA colour{static_cast<float>(paper >> 16 & 0xFF) / 255,
                         static_cast<float>(paper >> 8 & 0xFF) / 255, static_cast<float>(paper & 0xFF) / 255,
                         1};
    webkit_web_view_set_background_color(view_.get(), &colour);
    return paper;
}

void MailWebView::update(bool dark, bool interactive) {
    if (!*model_.rendered || !*model_.message) return clear(dark);
    coordinator_.show({.identity = *model_.selectionVersion,
                       .rendered = *model_.rendered,
                       .plain = (*model_.message)->plain,
                       .dark = dark,
                       .scale = model_.preferences().readingScale(),
                       .paperRGB = showPaper(dark)},
                      interactive);
}

void MailWebView::clear(bool dark) {
    static const auto nothing = std::make_shared<const MailCore::RenderedMail>();
    target_.set_visible(false);
    coordinator_.show({.identity = emptyPage_,
                       .rendered = nothing,
                       .plain = {},
                       .dark = dark,
                       .scale = model_.preferences().readingScale(),
                       .paperRGB = showPaper(dark)},
                      false);
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

// F7 would begin caret browsing, which ends the program. Past the last link Tab would leave the focus
// nowhere.
bool MailWebView::press(guint key, Gdk::ModifierType modifiers) {
    if (key == GDK_KEY_F7) return true;
    const bool tab = key == GDK_KEY_Tab || key == GDK_KEY_KP_Tab || key == GDK_KEY_ISO_Left_Tab;
    if (!tab || (modifiers & Gdk::ModifierType::CONTROL_MASK) != Gdk::ModifierType{}) return false;
    moveFocus((modifiers & Gdk::ModifierType::SHIFT_MASK) == Gdk::ModifierType{});
    return true;
}

void MailWebView::moveFocus(bool forward) {
    page_.moveFocus(forward,
                    [self = alive_.handle(), forward](const std::optional<WebKitReadingPage::Link>& link) {
                        if (!self) return;
                        self->showTarget(link ? link->href : "", link ? link->text : "");
                        if (!link) self->leave(forward);
                    });
}

void MailWebView::leave(bool forward) {
    if (!gtk_widget_has_focus(GTK_WIDGET(view_.get()))) return; // people have gone already
    g_signal_emit_by_name(get_root()->gobj(), "move-focus",
                          forward ? GTK_DIR_TAB_FORWARD : GTK_DIR_TAB_BACKWARD);
}

void MailWebView::pointAt(WebKitHitTestResult* hit) {
    const char* const uri = webkit_hit_test_result_get_link_uri(hit);
    const char* const label = webkit_hit_test_result_get_link_label(hit);
    showTarget(uri ? uri : "", label ? label : "");
}

// Where the link `href` of the page leads, and whether its `text` says otherwise.
void MailWebView::showTarget(std::string_view href, std::string_view text) {
    const auto address = coordinator_.linkBehind(href);
    if (!address) return target_.set_visible(false);
    const bool elsewhere = MailCore::leadsElsewhere(text, *address);
    const std::string mark = elsewhere ? model_.preferences().text(Texts::leadsElsewhere) : std::string();
    target_.set_text(mark + displayed(*address, 300));
    if (elsewhere)
        target_.add_css_class("leads-elsewhere");
    else
        target_.remove_css_class("leads-elsewhere");
    target_.set_visible(true);
}

// What the menu offers by default would open, download or reload; only copying makes sense here.
void MailWebView::prepareMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit) {
    webkit_context_menu_remove_all(menu);
    const auto append = [this, menu](WebKitContextMenuAction action, const Phrase& label) {
        webkit_context_menu_append(menu, webkit_context_menu_item_new_from_stock_action_with_label(
                                             action, model_.preferences().text(label).c_str()));
    };
    const char* const uri = webkit_hit_test_result_get_link_uri(hit);
    if (const auto address = uri ? coordinator_.linkBehind(uri) : std::nullopt)
        webkit_context_menu_append(menu, webkit_context_menu_item_new_from_gaction(
                                             G_ACTION(copyLink_->gobj()),
                                             model_.preferences().text(Texts::copyLink).c_str(),
                                             g_variant_new_string(address->c_str())));
    if (webkit_hit_test_result_context_is_selection(hit))
        append(WEBKIT_CONTEXT_MENU_ACTION_COPY, Texts::copyValue);
    append(WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL, Texts::selectAll);
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
