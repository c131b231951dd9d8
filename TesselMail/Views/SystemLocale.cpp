#include "TesselMail/Views/SystemLocale.h"

#include <glib.h>

namespace TesselMail {

const std::string& systemLocale() {
    // Asked of the environment, not of the C library: ICU knows locales that are not installed there.
    static const std::string locale = [] {
        const std::string first = *g_get_language_names_with_category("LC_TIME");
        const std::string name = first.substr(0, first.find_first_of(".@"));
        return name.empty() || name == "C" || name == "POSIX" ? std::string("en_US") : name;
    }();
    return locale;
}

} // namespace TesselMail
