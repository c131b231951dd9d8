#pragma once

namespace TesselMail {

/// Whether the web view's sandbox can start on this system, found by starting one, which takes some
/// milliseconds and three seconds at most. Where it cannot, making a web view would end the program.
bool sandboxWorks();

} // namespace TesselMail
