#include "Lock/LockedWebView.h"

#include "Lock/MailSecurity.h"
#include "Lock/ViewSwitches.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace TesselMail {
namespace {

constexpr const char* rulesIdentifier = "TesselMail.LocalOnly.v2";
// Under which a store of rules knows the view that compiles them, for as long as it is there.
constexpr const char* owner = "owner";

GtkWidget* refuseWindow(WebKitWebView*, WebKitNavigationAction*, gpointer) {
    return nullptr;
}

gboolean refusePermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
    webkit_permission_request_deny(request);
    return TRUE;
}

void refuseDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
}

} // namespace

std::string LockedWebView::makeRulesFolder() {
    g_mkdir_with_parents(g_get_user_cache_dir(), 0700);
    std::string path = std::string(g_get_user_cache_dir()) + "/tessel-mail-rules-XXXXXX";
    return g_mkdtemp(path.data()) ? path : std::string();
}

LockedWebView::Owned<WebKitWebView> LockedWebView::makeView(WebKitNetworkSession* session) {
    const Owned<WebKitSettings> settings(webkit_settings_new());
    for (const ViewSwitch& entry : viewSwitches)
        g_object_set(settings.get(), entry.name, static_cast<gboolean>(entry.on), nullptr);
    // Mail needs no graphics card, and some drivers leave the pane blank.
    webkit_settings_set_hardware_acceleration_policy(settings.get(),
                                                     WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    return Owned<WebKitWebView>(WEBKIT_WEB_VIEW(g_object_ref_sink(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "network-session", session, "settings", settings.get(), nullptr))));
}

LockedWebView::LockedWebView(std::string rulesFolder)
    : session_(webkit_network_session_new_ephemeral()), view_(makeView(session_.get())),
      rulesFolder_(std::move(rulesFolder)) {
    g_signal_connect(view_.get(), "create", G_CALLBACK(refuseWindow), nullptr);
    g_signal_connect(view_.get(), "permission-request", G_CALLBACK(refusePermission), nullptr);
    g_signal_connect(session_.get(), "download-started", G_CALLBACK(refuseDownload), nullptr);
    warmUp();
}

LockedWebView::~LockedWebView() {
    g_signal_handlers_disconnect_by_data(view_.get(), this);
    if (rules_) g_object_set_data(G_OBJECT(rules_.get()), owner, nullptr);
    removeFolder();
}

void LockedWebView::removeFolder() const {
    std::error_code ignored; // usually gone already
    std::filesystem::remove_all(rulesFolder_, ignored);
}

void LockedWebView::whenReady(Installed installed) {
    installed_ = std::move(installed);
    tellWhenReady();
}

void LockedWebView::compileRules() {
    rules_.reset(webkit_user_content_filter_store_new(rulesFolder_.c_str()));
    g_object_set_data(G_OBJECT(rules_.get()), owner, this);
    const std::string& text = MailCore::MailSecurity::contentRules();
    GBytes* const source = g_bytes_new_static(text.data(), text.size());
    webkit_user_content_filter_store_save(
        rules_.get(), rulesIdentifier, source, nullptr,
        [](GObject* store, GAsyncResult* result, gpointer) noexcept {
            if (auto* const self = static_cast<LockedWebView*>(g_object_get_data(store, owner)))
                self->rulesCompiled(result);
        },
        nullptr);
    g_bytes_unref(source);
}

void LockedWebView::rulesCompiled(GAsyncResult* result) {
    WebKitUserContentFilter* const filter =
        webkit_user_content_filter_store_save_finish(rules_.get(), result, nullptr);
    if (filter) {
        webkit_user_content_manager_add_filter(webkit_web_view_get_user_content_manager(view_.get()), filter);
        webkit_user_content_filter_unref(filter);
    }
    removeFolder(); // the rules stay mapped; their file has served
    inForce_ = filter != nullptr;
    tellWhenReady();
}

// What is loaded next follows a page that is complete, so that nobody takes the end of the one for the
// other's.
void LockedWebView::warmUp() {
    g_signal_connect(view_.get(), "load-changed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, LockedWebView* self) {
                         if (event == WEBKIT_LOAD_FINISHED) self->becomeWarm(); // or failed
                     }),
                     this);
    // After the owner has heard of it: what it loads next is not to be taken for what ended.
    g_signal_connect_after(view_.get(), "web-process-terminated",
                           G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason,
                                          LockedWebView* self) { self->becomeWarm(); }),
                           this);
    webkit_web_view_load_html(view_.get(), "", nullptr);
}

void LockedWebView::becomeWarm() {
    g_signal_handlers_disconnect_by_data(view_.get(), this);
    warm_ = true;
    tellWhenReady();
}

void LockedWebView::tellWhenReady() {
    if (warm_ && inForce_ && installed_) std::exchange(installed_, nullptr)(*inForce_);
}

} // namespace TesselMail
