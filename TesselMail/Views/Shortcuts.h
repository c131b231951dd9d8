#pragma once

#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

#include <array>

namespace TesselMail {

/// One command that has a key, as the window of shortcuts lists it.
struct Shortcut {
    enum class Group { files, reading, window };
    Group group;
    const char* action;
    const char* key; // as GTK writes accelerators
    Phrase text;
};

/// Every key of the application, in the order of the window that lists them.
inline constexpr auto shortcuts = std::to_array<Shortcut>({
    {Shortcut::Group::files, "win.open", "<Control>o", Texts::open},
    {Shortcut::Group::files, "win.close-all", "<Control><Shift>w", Texts::closeAll},
    {Shortcut::Group::files, "win.export-original", "<Control><Shift>s", Texts::exportOriginal},
    {Shortcut::Group::reading, "win.search", "<Control>f", Texts::searchMessages},
    {Shortcut::Group::reading, "win.details", "<Control>i", Texts::messageDetails},
    {Shortcut::Group::reading, "win.plain-text", "<Control><Shift>t", Texts::showPlainText},
    {Shortcut::Group::reading, "win.next-message", "<Alt>Down", Texts::nextMessage},
    {Shortcut::Group::reading, "win.previous-message", "<Alt>Up", Texts::previousMessage},
    {Shortcut::Group::window, "win.next-pane", "F6", Texts::nextPane},
    {Shortcut::Group::window, "win.previous-pane", "<Shift>F6", Texts::previousPane},
    {Shortcut::Group::window, "win.back", "<Alt>Left", Texts::back},
    {Shortcut::Group::window, "win.settings", "<Control>comma", Texts::settings},
    {Shortcut::Group::window, "win.shortcuts", "<Control>question", Texts::keyboardShortcuts},
    {Shortcut::Group::window, "window.close", "<Control>w", Texts::closeWindow},
    {Shortcut::Group::window, "app.quit", "<Control>q", Texts::quit},
});

/// Gives each command its key.
void setUpShortcuts(Gtk::Application& application);
/// Shows what the keys are in front of `parent`.
void showShortcuts(Gtk::Window& parent, const Preferences& preferences);

} // namespace TesselMail
