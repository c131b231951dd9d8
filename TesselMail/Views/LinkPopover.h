#pragma once

#include "TesselMail/Model/CapturedMailLink.h"
#include "TesselMail/Model/Preferences.h"
#include "TesselMail/Views/CopyButton.h"
#include "TesselMail/Views/LinkFields.h"

#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// As tall as it is told to be, or less where there is no room.
class FieldsScroller : public Gtk::ScrolledWindow {
public:
    FieldsScroller() : Glib::ObjectBase("TesselFieldsScroller") {}
    void setHeight(int height);

protected:
    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;

private:
    int height_ = 0;
};

/// Shows what a link of the message carries, for reading and copying. It never opens it.
class LinkPopover : public Gtk::Popover {
public:
    /// Attached to `parent`, which outlives it, as do the preferences.
    LinkPopover(Gtk::Widget& parent, Preferences& preferences);
    ~LinkPopover() override;

    /// Shows nothing for an address that is not to be shown.
    void show(const std::string& address, const Gdk::Rectangle& place);
    /// Emitted when it closes and leaves the focus nowhere.
    sigc::signal<void()>& signalLeft() { return signalLeft_; }

private:
    void showLink(const CapturedMailLink& link);
    void showTexts();
    void giveFocusBack();

    Preferences& preferences_;
    sigc::signal<void()> signalLeft_;
    std::string address_;
    bool chinese_ = false; // the language it shows
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 10};
    Gtk::Box head_{Gtk::Orientation::HORIZONTAL, 8};
    Gtk::Image icon_;
    Gtk::Label title_;
    Gtk::Button close_;
    LinkFields fields_;
    FieldsScroller scroller_;
    CopyButton copy_;
};

} // namespace TesselMail
