#pragma once

#include "TesselMail/Views/MainWindow.h"
#include "tests/Application/ModelFixture.h"
#include "tests/Application/PageAnswer.h"
#include "tests/Application/Sandbox.h"

#include <gtkmm.h>
#include <webkit/webkit.h>

#include <memory>
#include <string>

namespace TesselMail::Testing {

inline WebKitWebView* webViewIn(GtkWidget* widget) {
    if (WEBKIT_IS_WEB_VIEW(widget)) return WEBKIT_WEB_VIEW(widget);
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        if (WebKitWebView* const found = webViewIn(child)) return found;
    return nullptr;
}

/// The texts of the popovers that are open in `widget`.
inline std::string popoverText(GtkWidget* widget, bool inside = false) {
    std::string text;
    inside = inside || (GTK_IS_POPOVER(widget) && gtk_widget_get_visible(widget));
    if (inside && GTK_IS_LABEL(widget)) text = gtk_label_get_text(GTK_LABEL(widget));
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        text += popoverText(child, inside);
    return text;
}

/// The visible button in `widget` that reads `text`.
inline GtkButton* buttonIn(GtkWidget* widget, const std::string& text, GtkButton* around = nullptr) {
    if (!gtk_widget_get_child_visible(widget)) return nullptr;
    if (GTK_IS_BUTTON(widget)) around = GTK_BUTTON(widget);
    if (GTK_IS_LABEL(widget) && gtk_label_get_text(GTK_LABEL(widget)) == text) return around;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        if (GtkButton* const found = buttonIn(child, text, around)) return found;
    return nullptr;
}

inline std::string clipboardText(GtkWidget* widget) {
    GdkContentProvider* const content = gdk_clipboard_get_content(gtk_widget_get_clipboard(widget));
    if (!content) return {};
    Glib::ValueBase value;
    value.init(G_TYPE_STRING);
    gdk_content_provider_get_value(content, value.gobj(), nullptr);
    const char* const text = g_value_get_string(value.gobj());
    return text ? text : "";
}

class Window : public ModelTest {
protected:
    Window() { window_->present(); }

    void SetUp() override {
        if (!hasSandbox()) GTEST_SKIP() << "no sandbox, no web view";
    }

    WebKitWebView* webView() { return webViewIn(GTK_WIDGET(window_->gobj())); }
    /// What `script`, a function body, answers in the page as text.
    std::string evaluate(const std::string& script) {
        PageAnswer answer;
        askPage(webView(), script, answer);
        waitUntil([&] { return answer.come; });
        return answer.text;
    }
    void waitForPage(const std::string& text) {
        waitUntil([this] { return webView() != nullptr; });
        waitUntil([&] {
            return evaluate("return document.body?.innerText ?? ''").find(text) != std::string::npos;
        });
    }

    WindowState state_{settings_.path("window.ini").string()};
    std::unique_ptr<MainWindow> window_ = std::make_unique<MainWindow>(*model_, state_);
};

} // namespace TesselMail::Testing
