#pragma once

#include "TesselMail/Model/Preferences.h"
#include "TesselMail/Views/Actions.h"

#include <gtkmm.h>

#include <array>

namespace TesselMail {

/// One command that has a key, as the window of shortcuts lists it.
struct Shortcut {
    enum class Group { files, reading, window };
    Group group;
    Action action;
    const char* key; // as GTK writes accelerators
    Phrase text;
};

/// Every key of the application, in the order of the window that lists them.
inline constexpr auto shortcuts = std::to_array<Shortcut>({
    {Shortcut::Group::files, Actions::open, "<Control>o", Texts::open},
    {Shortcut::Group::files, Actions::closeAll, "<Control><Shift>w", Texts::closeAll},
    {Shortcut::Group::files, Actions::exportOriginal, "<Control><Shift>s", Texts::exportOriginal},
    {Shortcut::Group::reading, Actions::search, "<Control>f", Texts::searchMessages},
    {Shortcut::Group::reading, Actions::details, "<Control>i", Texts::messageDetails},
    {Shortcut::Group::reading, Actions::plainText, "<Control><Shift>t", Texts::showPlainText},
    {Shortcut::Group::reading, Actions::nextMessage, "<Alt>Down", Texts::nextMessage},
    {Shortcut::Group::reading, Actions::previousMessage, "<Alt>Up", Texts::previousMessage},
    {Shortcut::Group::window, Actions::nextPane, "F6", Texts::nextPane},
    {Shortcut::Group::window, Actions::previousPane, "<Shift>F6", Texts::previousPane},
    {Shortcut::Group::window, Actions::widenPane, "F8", Texts::widenPane},
    {Shortcut::Group::window, Actions::narrowPane, "<Shift>F8", Texts::narrowPane},
    {Shortcut::Group::window, Actions::back, "<Alt>Left", Texts::back},
    {Shortcut::Group::window, Actions::settings, "<Control>comma", Texts::settings},
    {Shortcut::Group::window, Actions::shortcuts, "<Control>question", Texts::keyboardShortcuts},
    {Shortcut::Group::window, Actions::closeWindow, "<Control>w", Texts::closeWindow},
    {Shortcut::Group::window, Actions::quit, "<Control>q", Texts::quit},
});

/// Gives each command its key.
void setUpShortcuts(Gtk::Application& application);
/// Shows what the keys are in front of `parent`.
void showShortcuts(Gtk::Window& parent, const Preferences& preferences);

} // namespace TesselMail
