#pragma once

#include "MailCore/Platform/Alive.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <adwaita.h>
#include <gtkmm.h>

namespace TesselMail {

/// The settings: reading, mail links, privacy. Every change counts at once. `model` outlives it.
class SettingsWindow {
public:
    SettingsWindow(AppModel& model, Gtk::Window& parent);
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;
    ~SettingsWindow();

    /// Emitted when people close the window, which its owner then lets go of; not from inside the signal.
    sigc::signal<void()>& signalClosed() noexcept { return closed_; }
    void present() { gtk_window_present(window()); }

private:
    GtkWindow* window() const { return GTK_WINDOW(window_.get()); }
    AdwPreferencesGroup* addGroup();
    AdwComboRow* addChoice(AdwPreferencesGroup* group);
    void addHandlerRows();
    void showTexts();
    void choose(AdwComboRow* row);
    void store(const AdwComboRow* row, guint place);
    void askToBecomeHandler();
    static Task becomeHandler(MailCore::Alive<SettingsWindow>::Handle self, Later<bool> done);

    AppModel& model_;
    ObjectRef<AdwPreferencesWindow> window_;
    AdwPreferencesPage* page_;
    AdwPreferencesGroup* reading_ = nullptr;
    AdwComboRow* language_ = nullptr;
    AdwComboRow* appearance_ = nullptr;
    AdwComboRow* textSize_ = nullptr;
    AdwPreferencesGroup* links_ = nullptr;
    GtkButton* becomeHandler_ = nullptr;
    GtkLabel* handlerStatus_ = nullptr;
    AdwPreferencesGroup* privacy_ = nullptr;
    AdwActionRow* privacyRow_ = nullptr;
    sigc::connection changed_;
    sigc::signal<void()> closed_;
    bool updating_ = false; // rows change because the settings did
    MailCore::Alive<SettingsWindow> alive_{*this};
};

} // namespace TesselMail
