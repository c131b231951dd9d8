// Each lock of the web view alone, in front of a server that would be told of a gap; and the server with
// every lock off, which shows that it would be.
#include "Lock/ContentPolicy.h"
#include "Lock/LockedWebView.h"
#include "Lock/ViewSwitches.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "tests/Application/ModelFixture.h"
#include "tests/Application/PageAnswer.h"
#include "tests/Application/Sandbox.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <filesystem>
#include <memory>
#include <string>

namespace TesselMail::Testing {
namespace {

/// A server on this machine that counts who comes and answers nobody.
class Server {
public:
    Server() {
        port_ = g_socket_listener_add_any_inet_port(G_SOCKET_LISTENER(service_.get()), nullptr, nullptr);
        g_signal_connect(
            service_.get(), "incoming",
            G_CALLBACK(+[](GSocketService*, GSocketConnection* connection, GObject*, int* visits) {
                ++*visits;
                g_io_stream_close(G_IO_STREAM(connection), nullptr, nullptr);
                return TRUE;
            }),
            &visits_);
    }
    ~Server() { g_socket_service_stop(service_.get()); }

    std::string address(const char* scheme = "http") const {
        return std::string(scheme) + "://127.0.0.1:" + std::to_string(port_) + "/x";
    }
    int visits() const { return visits_; }

private:
    ObjectRef<GSocketService> service_ = ObjectRef<GSocketService>::adopt(g_socket_service_new());
    guint16 port_ = 0;
    int visits_ = 0;
};

class Lock : public MainLoopTest {
protected:
    void SetUp() override {
        if (!hasSandbox()) GTEST_SKIP() << "no sandbox, no web view";
        locked_ = std::make_unique<LockedWebView>(LockedWebView::makeRulesFolder());
        gtk_window_set_child(GTK_WINDOW(window_), GTK_WIDGET(view()));
        gtk_window_present(GTK_WINDOW(window_));
        waitUntil([this] { return !webkit_web_view_is_loading(view()); }); // its own empty page
    }
    void TearDown() override { gtk_window_destroy(GTK_WINDOW(window_)); }

    WebKitWebView* view() const { return locked_->view(); }
    void installRules() {
        bool done = false;
        bool installed = false;
        locked_->compileRules();
        locked_->whenReady([&](bool success) {
            done = true;
            installed = success;
        });
        waitUntil([&] { return done; });
        ASSERT_TRUE(installed);
    }
    /// Loads a page with `body` and waits for all that it loads in turn.
    void load(const std::string& body, bool policy) {
        std::string page = "<!doctype html><html><head>";
        if (policy)
            page += "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
                    MailCore::contentPolicyText() + "\">";
        page += "</head><body>" + body + "</body></html>";
        bool finished = false;
        const gulong handler = g_signal_connect(
            view(), "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, bool* done) {
                if (event == WEBKIT_LOAD_FINISHED) *done = true;
            }),
            &finished);
        webkit_web_view_load_html(view(), page.c_str(), nullptr);
        waitUntil([&] { return finished; });
        g_signal_handler_disconnect(view(), handler);
    }
    std::string evaluate(const std::string& script) {
        PageAnswer answer;
        askPage(view(), script, answer);
        waitUntil([&] { return answer.come; });
        return answer.text;
    }

    GtkWidget* window_ = gtk_window_new();
    std::unique_ptr<LockedWebView> locked_;
};

const auto loads = std::to_array<std::pair<const char*, const char*>>({
    {"an image", "<img src='{}'>"},
    {"a stylesheet", "<link rel=stylesheet href='{}'>"},
    {"an import", "<style>@import url({});</style>"},
    {"a background", "<p style='background:url({})'>text</p>"},
    {"a frame", "<iframe src='{}'></iframe>"},
    {"an object", "<object data='{}'></object>"},
});

std::string filled(std::string text, const std::string& address) {
    return text.replace(text.find("{}"), 2, address);
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
    for (const char* const asked : {"create", "permission-request"})
        EXPECT_TRUE(
            g_signal_has_handler_pending(view(), g_signal_lookup(asked, WEBKIT_TYPE_WEB_VIEW), 0, FALSE))
            << asked;
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
