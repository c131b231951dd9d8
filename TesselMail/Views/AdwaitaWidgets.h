#pragma once

#include <adwaita.h>
#include <gtkmm.h>

#include <string>

/// The few widgets of libadwaita the window uses, which have no C++ binding. Each factory's result floats
/// until it is put somewhere.
namespace TesselMail::Adwaita {

/// A C widget as gtkmm sees it; owned by its parent.
template <typename Object>
Gtk::Widget& wrapped(Object* widget) {
    return *Glib::wrap(GTK_WIDGET(widget));
}

/// What a screen reader calls `widget`, and the button that a menu's button is made of.
void setName(Gtk::Widget& widget, const std::string& name);
/// What people see when they point at `widget`.
void setTooltip(Gtk::Widget& widget, const std::string& text);
/// Puts `text` into `tooltip`, broken where it is long.
void showTooltip(const Glib::RefPtr<Gtk::Tooltip>& tooltip, const std::string& text);
/// Both.
void setNameAndTooltip(Gtk::Widget& widget, const std::string& name);

/// How a screen reader takes what changes in a widget: it waits for a pause, or speaks at once.
enum class Live { status, alert };
/// Makes `widget` speak of its changes. To be called before it is put anywhere.
void makeLive(Gtk::Widget& widget, Live how);

/// Makes `window` stand before `parent`, go with it and answer to the keys of the whole application.
void attach(GtkWindow* window, Gtk::Window& parent);

/// A header bar with `title` in the middle and `subtitle` below it when there is one.
class HeaderBar {
public:
    HeaderBar();
    Gtk::Widget& widget() const { return wrapped(bar_); }
    void setTitle(const std::string& title, const std::string& subtitle = {});
    void hideTitle();
    void packStart(Gtk::Widget& child) { adw_header_bar_pack_start(bar_, child.gobj()); }
    void packEnd(Gtk::Widget& child) { adw_header_bar_pack_end(bar_, child.gobj()); }
    /// Which of the window's own buttons stand here.
    void showWindowButtons(bool start, bool end);

private:
    AdwHeaderBar* bar_;
    AdwWindowTitle* title_;
};

/// The button that opens files, with a menu of the other ways to open.
class OpenButton {
public:
    OpenButton();
    Gtk::Widget& widget() const { return wrapped(button_); }
    void setTexts(const std::string& help, const std::string& menuHelp,
                  const Glib::RefPtr<Gio::MenuModel>& menu);

private:
    AdwSplitButton* button_;
};

/// A page for when there is nothing to show.
class StatusPage {
public:
    explicit StatusPage(const std::string& icon);
    Gtk::Widget& widget() const { return wrapped(page_); }
    void setTexts(const std::string& title, const std::string& description);
    void setChild(Gtk::Widget& child) { adw_status_page_set_child(page_, child.gobj()); }
    /// Shows a scrollbar for as long as not all fits, not only under the pointer.
    void showScrollbar();

private:
    AdwStatusPage* page_;
};

} // namespace TesselMail::Adwaita
