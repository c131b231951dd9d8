#pragma once

#include <gtkmm.h>

namespace TesselMail {

/// Adds the application's own style to `display`.
void installStyle(const Glib::RefPtr<Gdk::Display>& display);

} // namespace TesselMail
