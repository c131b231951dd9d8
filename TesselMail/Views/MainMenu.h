#pragma once

#include "TesselMail/Model/Preferences.h"

#include <giomm.h>

namespace TesselMail {

/// The commands of the window, in the interface's language.
Glib::RefPtr<Gio::Menu> mainMenu(const Preferences& preferences);
/// The ways to open something.
Glib::RefPtr<Gio::Menu> openMenu(const Preferences& preferences);

} // namespace TesselMail
