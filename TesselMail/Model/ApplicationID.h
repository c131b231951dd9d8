#pragma once

namespace TesselMail {

/// The application's reverse-domain identifier: on the session bus, of its queues and of its files.
inline constexpr const char* applicationID = "org.tesselmail.TesselMail";

} // namespace TesselMail
