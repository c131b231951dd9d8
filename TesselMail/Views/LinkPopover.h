#pragma once

#include "TesselMail/Model/CapturedMailLink.h"
#include "TesselMail/Model/Preferences.h"
#include "TesselMail/Views/CopyButton.h"
#include "TesselMail/Views/LinkFields.h"

#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// Shows what a link of the message carries, for reading and copying. It never opens it.
class LinkPopover : public Gtk::Popover {
public:
    /// Attached to `parent`, which outlives it, as do the preferences.
    LinkPopover(Gtk::Widget& parent, Preferences& preferences);
    ~LinkPopover() override;

    /// Shows nothing for an address that is not to be shown.
    void show(const std::string& address, const Gdk::Rectangle& place);

private:
    void showLink(const CapturedMailLink& link);
    void showTexts();

    Preferences& preferences_;
    std::string address_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 10};
    Gtk::Box head_{Gtk::Orientation::HORIZONTAL, 8};
    Gtk::Image icon_;
    Gtk::Label title_;
    Gtk::Button close_;
    LinkFields fields_;
    Gtk::ScrolledWindow scroller_;
    CopyButton copy_;
};

} // namespace TesselMail
