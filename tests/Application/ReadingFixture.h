#pragma once

#include "tests/Application/WindowFixture.h"

#include <gmock/gmock.h>


namespace TesselMail::Testing {

/// Whether `widget` and all around it are shown.
inline bool isShown(GtkWidget* widget) {
    return gtk_widget_get_mapped(widget) && gtk_widget_get_child_visible(widget);
}

/// Every widget in `widget` that is shown.
inline void addShown(GtkWidget* widget, std::vector<GtkWidget*>& found) {
    if (!isShown(widget)) return;
    found.push_back(widget);
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        addShown(child, found);
}

inline std::string textOf(GtkTextView* view) {
    return Glib::wrap(gtk_text_view_get_buffer(view), true)->get_text();
}

/// A window with a message in it.
class ReadingWindow : public Window {
protected:
    std::vector<GtkWidget*> shown() {
        std::vector<GtkWidget*> found;
        addShown(GTK_WIDGET(window_->gobj()), found);
        return found;
    }
    /// The text of the one text view that is shown.
    std::string plainText() {
        for (GtkWidget* const widget : shown())
            if (GTK_IS_TEXT_VIEW(widget)) return textOf(GTK_TEXT_VIEW(widget));
        return {};
    }
    /// All labels that are shown, one a line.
    std::string labels() {
        std::string text;
        for (GtkWidget* const widget : shown())
            if (GTK_IS_LABEL(widget)) text.append(gtk_label_get_text(GTK_LABEL(widget))).append("\n");
        return text;
    }
    /// Those of them that a screen reader speaks by itself.
    std::string liveTexts() {
        std::string text;
        for (GtkWidget* const widget : shown()) {
            const GtkAccessibleRole role = gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(widget));
            if (GTK_IS_LABEL(widget) &&
                (role == GTK_ACCESSIBLE_ROLE_ALERT || role == GTK_ACCESSIBLE_ROLE_STATUS))
                text.append(gtk_label_get_text(GTK_LABEL(widget))).append("\n");
        }
        return text;
    }
    GtkWidget* withTooltip(const std::string& tooltip) {
        for (GtkWidget* const widget : shown()) {
            const char* const text = gtk_widget_get_tooltip_text(widget);
            if (text && text == tooltip) return widget;
        }
        return nullptr;
    }
    std::string pageText() { return evaluate("return document.body.innerText"); }
    std::string linkPanel() { return popoverText(GTK_WIDGET(window_->gobj())); }
    void clickLink(const std::string& address) {
        evaluate("document.links[0].click()");
        waitUntil([&] { return linkPanel().find(address) != std::string::npos; });
    }
    URL html(const std::string& name, const std::string& body) {
        return folder_.write(name, Mail().from("ann@tessel.example").subject(name).html(body).string());
    }
};

} // namespace TesselMail::Testing
