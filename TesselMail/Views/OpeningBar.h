#pragma once

#include "TesselMail/Model/AppModel.h"

#include <gtkmm.h>

namespace TesselMail {

/// Tells that files are being opened, how far that is, and lets people stop it. `model` outlives it.
class OpeningBar : public Gtk::Revealer {
public:
    explicit OpeningBar(AppModel& model);
    ~OpeningBar() override { delay_.disconnect(); }

private:
    void showTexts();
    void showBusy();
    void showProgress();

    AppModel& model_;
    Gtk::Box content_{Gtk::Orientation::HORIZONTAL, 12};
    Gtk::Spinner spinner_;
    Gtk::Label title_;
    Gtk::Label progress_;
    Gtk::Button cancel_;
    sigc::connection delay_;
};

} // namespace TesselMail
