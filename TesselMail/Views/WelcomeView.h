#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"

#include <gtkmm.h>

namespace TesselMail {

/// What the window shows while nothing is open. `model` outlives it.
class WelcomeView : public Gtk::Box {
public:
    explicit WelcomeView(AppModel& model);
    void focusOpen() { open_.grab_focus(); }

private:
    void showTexts();

    AppModel& model_;
    Adwaita::HeaderBar header_;
    Adwaita::OpenButton openButton_;
    Gtk::MenuButton menu_;
    Adwaita::StatusPage page_{"mail-read-symbolic"};
    Gtk::Box actions_{Gtk::Orientation::VERTICAL, 18};
    Gtk::Button open_;
    AdwButtonContent* openContent_ = ADW_BUTTON_CONTENT(adw_button_content_new());
    Gtk::Button capture_;
    Gtk::Label drop_;
    Gtk::Label formats_;
};

} // namespace TesselMail
