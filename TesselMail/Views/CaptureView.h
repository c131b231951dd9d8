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

private:
    void showCapture();
    void showTexts();
    void copyOriginal();

    AppModel& model_;
    Gtk::Box content_{Gtk::Orientation::VERTICAL, 16};
    Gtk::Box head_{Gtk::Orientation::HORIZONTAL, 10};
    Gtk::Image icon_;
    Gtk::Label title_;
    LinkFields fields_;
    Gtk::Box actions_{Gtk::Orientation::HORIZONTAL, 10};
    CopyButton details_;
    Gtk::Button original_;
    Gtk::Label nothingSent_;
    Gtk::Label footer_;
};

} // namespace TesselMail
