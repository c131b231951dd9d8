#pragma once

#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// The text of a message in a text widget, which a screen reader speaks and the keyboard walks through. The
/// preferences outlive it.
class PlainMessageView : public Gtk::Box {
public:
    explicit PlainMessageView(Preferences& preferences);

    /// Shows `text` in the reading size; above it `reason`, which may be empty.
    void show(std::string text, const std::string& reason);
    void clear();
    void focusText() { text_.grab_focus(); }

private:
    void showSize();

    Preferences& preferences_;
    Gtk::Label reason_;
    Gtk::ScrolledWindow scroller_;
    Gtk::TextView text_;
    Glib::RefPtr<Gtk::CssProvider> size_ = Gtk::CssProvider::create();
    std::string shown_;
};

} // namespace TesselMail
