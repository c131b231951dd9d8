#pragma once

#include "MailCore/Platform/UUID.h"
#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// Shows where a link of the message leads, for reading and copying. It never opens it.
class LinkPopover : public Gtk::Popover {
public:
    /// Attached to `parent`, which outlives it, as do the preferences.
    LinkPopover(Gtk::Widget& parent, Preferences& preferences);
    ~LinkPopover() override;

    void show(const std::string& address, const Gdk::Rectangle& place);

private:
    void copy();
    void showTexts();

    Preferences& preferences_;
    std::string address_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 10};
    Gtk::Label title_;
    Gtk::Label text_;
    Gtk::ScrolledWindow scroller_;
    Gtk::Button copy_;
};

} // namespace TesselMail
