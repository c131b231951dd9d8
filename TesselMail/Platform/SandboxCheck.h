#pragma once

#include "TesselMail/Platform/Task.h"

namespace TesselMail {

/// Whether the web view's sandbox can start on this system. Where it cannot, making a web view would end the
/// program.
Later<bool> sandboxWorks();

} // namespace TesselMail
