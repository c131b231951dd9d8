#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Model/WindowState.h"
#include "TesselMail/Platform/ObjectRef.h"
#include "TesselMail/Views/OpeningBar.h"
#include "TesselMail/Views/Panes.h"
#include "TesselMail/Views/SettingsWindow.h"
#include "TesselMail/Views/Toasts.h"
#include "TesselMail/Views/WelcomeView.h"

#include <gtkmm.h>

#include <memory>

namespace TesselMail {

/// The window: the panes, or the welcome while nothing is open. `model` and `state` outlive it.
class MainWindow : public Gtk::ApplicationWindow {
public:
    MainWindow(AppModel& model, WindowState& state, PreparedView prepared = PreparedView::make());
    ~MainWindow() override;
    /// Tells people something that needs no answer.
    void tell(const std::string& text) { toasts_.tell(text); }

private:
    void addActions();
    void addDropTarget();
    void showTexts();
    void showStarted();
    void showWelcome();
    void showCommands();
    void showError();
    void showAppearance();
    void keepState();
    void showCapture();
    void showSelectedList();
    void showSettings();
    void closeSettings();
    static bool holdsFiles(const Gtk::DropTarget& target);
    bool offersFiles(const Glib::RefPtr<Gdk::Drop>& drop) const;
    bool drop(const Glib::ValueBase& value, double x, double y);
    void errorDismissed(bool reopen);

    AppModel& model_;
    bool startsWithFiles_; // what the program was started with is still being opened
    WindowState& state_;
    Gtk::Overlay overlay_;
    Gtk::Stack stack_;
    WelcomeView welcome_;
    Panes panes_;
    OpeningBar opening_;
    Toasts toasts_;
    Gtk::Box dropFrame_;
    Glib::RefPtr<Gio::SimpleAction> closeAll_;
    Glib::RefPtr<Gio::SimpleAction> export_;
    Glib::RefPtr<Gio::SimpleAction> details_;
    ObjectWatch<AdwMessageDialog> errorDialog_;
    std::unique_ptr<SettingsWindow> settings_; // while it is open
};

} // namespace TesselMail
