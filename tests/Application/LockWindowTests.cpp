// Each lock of the web view alone, in front of a server that would be told of a gap; and the server with
// every lock off, which shows that it would be.
#include "Lock/ViewSwitches.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "tests/Application/LockFixture.h"

#include <filesystem>
#include <string>

namespace TesselMail::Testing {
namespace {

/// A request for something a page may want, of which no library needs to think.
struct AskedPermission {
    GObject object;
    bool allowed;
    bool denied;
};

AskedPermission* asked(WebKitPermissionRequest* request) {
    return reinterpret_cast<AskedPermission*>(request);
}

GType permissionType() {
    static const GType type = [] {
        const GType made =
            g_type_register_static_simple(G_TYPE_OBJECT, "TesselAskedPermission", sizeof(GObjectClass),
                                          nullptr, sizeof(AskedPermission), nullptr, GTypeFlags(0));
        const GInterfaceInfo info = {
            [](gpointer table, gpointer) {
                auto* const request = static_cast<WebKitPermissionRequestInterface*>(table);
                request->allow = [](WebKitPermissionRequest* one) { asked(one)->allowed = true; };
                request->deny = [](WebKitPermissionRequest* one) { asked(one)->denied = true; };
            },
            nullptr, nullptr};
        g_type_add_interface_static(made, WEBKIT_TYPE_PERMISSION_REQUEST, &info);
        return made;
    }();
    return type;
}

// The control: without policy and rules each of these reaches the server.
TEST_F(Lock, HasAServerThatIsReachedWhenItIsOff) {
    for (const auto& [name, body] : loads) {
        const Server server;
        load(filled(body, server.address()), false);
        waitUntil([&] { return server.visits() > 0; });
        EXPECT_GT(server.visits(), 0) << name;
    }
}

TEST_F(Lock, LoadsNothingForThePolicyAlone) {
    const Server server;
    for (const auto& [name, body] : loads) {
        load(filled(body, server.address()), true);
        EXPECT_EQ(server.visits(), 0) << name;
    }
}

TEST_F(Lock, LoadsNothingForTheRulesAlone) {
    installRules();
    const Server server;
    for (const auto& [name, body] : loads) {
        load(filled(body, server.address()), false);
        EXPECT_EQ(server.visits(), 0) << name;
    }
    // What runs in a world of its own is not bound by the policy, but by the rules.
    load("", false);
    EXPECT_EQ(evaluate("try { await fetch('" + server.address() +
                       "'); return 'fetched' } catch { return 'blocked' }"),
              "blocked");
    EXPECT_EQ(evaluate("return await new Promise(done => { try { const s = new WebSocket('" +
                       server.address("ws") +
                       "'); s.onopen = () => done('open'); s.onerror = s.onclose = () => done('closed') } "
                       "catch { done('closed') } })"),
              "closed");
    EXPECT_EQ(server.visits(), 0);
}

TEST_F(Lock, RunsNoScriptOfAPage) {
    const std::string body = "<script>document.title = 'ran'</script>"
                             "<img src='data:,' onerror=\"document.title = 'ran'\">"
                             "<svg onload=\"document.title = 'ran'\"></svg>";
    load(body, false);
    EXPECT_EQ(evaluate("await new Promise(done => setTimeout(done, 50)); return document.title"), "");
    // The same page where page scripts are on.
    webkit_settings_set_enable_javascript_markup(webkit_web_view_get_settings(view()), TRUE);
    load(body, false);
    EXPECT_EQ(evaluate("await new Promise(done => setTimeout(done, 50)); return document.title"), "ran");
    load(body, true);
    EXPECT_EQ(evaluate("await new Promise(done => setTimeout(done, 50)); return document.title"), "")
        << "the policy alone";
}

TEST_F(Lock, SetsEverySwitchAndKeepsNothing) {
    for (const ViewSwitch& entry : viewSwitches) {
        if (std::string_view(entry.name) == "enable-dns-prefetching") continue; // cannot be asked any more
        gboolean on = !static_cast<gboolean>(entry.on);
        g_object_get(webkit_web_view_get_settings(view()), entry.name, &on, nullptr);
        EXPECT_EQ(on != FALSE, entry.on) << entry.name;
    }
    EXPECT_TRUE(webkit_network_session_is_ephemeral(webkit_web_view_get_network_session(view())));
}

TEST_F(Lock, RefusesDownloadsWindowsAndPermissions) {
    bool failed = false;
    const auto download = ObjectRef<WebKitDownload>::adopt(
        webkit_web_view_download_uri(view(), "data:application/octet-stream,text"));
    std::string reason;
    g_signal_connect(
        download.get(), "failed", G_CALLBACK(+[](WebKitDownload*, GError* error, std::string* why) {
            *why = error->message;
            if (g_error_matches(error, WEBKIT_DOWNLOAD_ERROR, WEBKIT_DOWNLOAD_ERROR_CANCELLED_BY_USER))
                *why = "cancelled";
        }),
        &reason);
    g_signal_connect(download.get(), "finished",
                     G_CALLBACK(+[](WebKitDownload*, bool* ended) { *ended = true; }), &failed);
    waitUntil([&] { return failed; });
    EXPECT_EQ(reason, "cancelled");
    g_signal_handlers_disconnect_by_data(download.get(), &reason);
    g_signal_handlers_disconnect_by_data(download.get(), &failed);

    // What nobody answers is refused by the library as well, as it is today: that somebody answers is what
    // can be seen.
    EXPECT_TRUE(
        g_signal_has_handler_pending(view(), g_signal_lookup("create", WEBKIT_TYPE_WEB_VIEW), 0, FALSE));
    const auto permission = ObjectRef<AskedPermission>::adopt(
        static_cast<AskedPermission*>(g_object_new(permissionType(), nullptr)));
    gboolean answered = FALSE;
    g_signal_emit_by_name(view(), "permission-request", permission.get(), &answered);
    EXPECT_TRUE(answered);
    EXPECT_TRUE(permission.get()->denied);
    EXPECT_FALSE(permission.get()->allowed);
    GtkWidget* opened = GTK_WIDGET(view());
    g_signal_emit_by_name(view(), "create", nullptr, &opened);
    EXPECT_EQ(opened, nullptr);
}

TEST_F(Lock, LeavesNoFolderBehind) {
    const std::string folder = LockedWebView::makeRulesFolder();
    ASSERT_FALSE(folder.empty());
    { const LockedWebView never(folder); }
    EXPECT_FALSE(std::filesystem::exists(folder));
}

// The page of a message carries the policy before anything that it could forbid.
TEST(Page, DeclaresThePolicyFirst) {
    const std::string page =
        MailCore::RenderedMail{.body = "<p>", .links = {}, .stylesheet = "p{}"}.page(false, 1, std::nullopt);
    const std::size_t policy =
        page.find("Content-Security-Policy\" content=\"" + MailCore::contentPolicyText() + "\"");
    ASSERT_NE(policy, std::string::npos);
    EXPECT_LT(policy, page.find("<style"));
    EXPECT_EQ(page.find("Content-Security-Policy", policy + 1), std::string::npos);
}

} // namespace
} // namespace TesselMail::Testing
