#pragma once

#include <string>

namespace TesselMail {

/// The system's locale for dates and numbers, as in "en_GB"; "en_US" where none is set.
const std::string& systemLocale();

} // namespace TesselMail
