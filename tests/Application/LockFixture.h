#pragma once

#include "Lock/ContentPolicy.h"
#include "Lock/LockedWebView.h"
#include "tests/Application/ModelFixture.h"
#include "tests/Application/PageAnswer.h"
#include "tests/Application/Sandbox.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace TesselMail::Testing {

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

/// What a page loads by itself, with an address in the place of {}.
inline const auto loads = std::to_array<std::pair<const char*, const char*>>({
    {"an image", "<img src='{}'>"},
    {"a stylesheet", "<link rel=stylesheet href='{}'>"},
    {"an import", "<style>@import url({});</style>"},
    {"a background", "<p style='background:url({})'>text</p>"},
    {"a frame", "<iframe src='{}'></iframe>"},
    {"an object", "<object data='{}'></object>"},
    {"a picture in a set", "<img srcset='{} 1x'>"},
    {"a picture in SVG", "<svg><image href='{}'/></svg>"},
    {"a button's picture", "<input type=image src='{}'>"},
    {"a preloaded picture", "<link rel=preload as=image href='{}'>"},
    {"a content before", "<style>p::before{content:url({})}</style><p>text</p>"},
    {"another page", "<meta http-equiv=refresh content='0;url={}'>"},
});

inline std::string filled(std::string text, const std::string& address) {
    return text.replace(text.find("{}"), 2, address);
}

} // namespace TesselMail::Testing
