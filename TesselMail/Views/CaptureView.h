#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/CopyButton.h"
#include "TesselMail/Views/LinkFields.h"

#include <gtkmm.h>

namespace TesselMail {

/// What a mail link from the system carries, in place of a message. `model` outlives it.
class CaptureView : public Gtk::ScrolledWindow {
public:
    explicit CaptureView(AppModel& model);
    void focusCopying() { details_.grab_focus(); }
    /// Emitted before people put the link away.
    sigc::signal<void()>& signalLeft() { return signalLeft_; }

private:
    void showCapture();
    void showTexts();
    void copyOriginal();
    void close();
    bool leave(Gtk::Widget& widget, const Glib::VariantBase& arguments);

    AppModel& model_;
    sigc::signal<void()> signalLeft_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 16};
    Gtk::Box head_{Gtk::Orientation::HORIZONTAL, 10};
    Gtk::Image icon_;
    Gtk::Label title_;
    Gtk::Button close_;
    LinkFields fields_;
    Gtk::FlowBox actions_;
    CopyButton details_;
    Gtk::Button original_;
    Gtk::Label nothingSent_;
    Gtk::Label footer_;
};

} // namespace TesselMail
