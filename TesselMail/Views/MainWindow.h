#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/ObjectRef.h"
#include "TesselMail/Views/MessageList.h"
#include "TesselMail/Views/OpeningBar.h"
#include "TesselMail/Views/ReadingPane.h"
#include "TesselMail/Views/SettingsWindow.h"
#include "TesselMail/Views/Sidebar.h"
#include "TesselMail/Views/WelcomeView.h"

#include <gtkmm.h>

#include <memory>

namespace TesselMail {

/// The window: sources, messages and the message on show beside each other, or one after the other where it
/// is narrow; the welcome while nothing is open. `model` outlives it.
class MainWindow : public Gtk::ApplicationWindow {
public:
    explicit MainWindow(AppModel& model);
    ~MainWindow() override;

private:
    void arrangePanes();
    void addActions();
    void addDropTarget();
    void showTexts();
    void showWelcome();
    void showFolded();
    void showCommands();
    void showError();
    void showAppearance();
    void showSources();
    void showList();
    void showReader();
    void showCapture();
    void showSelectedList();
    void showSettings();
    bool drop(const Glib::ValueBase& value, double x, double y);
    void errorDismissed();

    AppModel& model_;
    Gtk::Overlay overlay_;
    Gtk::Stack stack_;
    WelcomeView welcome_;
    Sidebar sidebar_;
    MessageList list_;
    ReadingPane reader_;
    OpeningBar opening_;
    Gtk::Box dropFrame_;
    Gtk::Button backToSources_;
    Gtk::Button backToList_;
    AdwLeaflet* outer_; // the sources, and `inner_`
    AdwLeaflet* inner_; // the list, and the reader
    Glib::RefPtr<Gio::SimpleAction> closeAll_;
    Glib::RefPtr<Gio::SimpleAction> export_;
    Glib::RefPtr<Gio::SimpleAction> details_;
    ObjectWatch<AdwMessageDialog> errorDialog_;
    std::unique_ptr<SettingsWindow> settings_; // from its first use
};

} // namespace TesselMail
