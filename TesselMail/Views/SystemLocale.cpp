#include "TesselMail/Views/SystemLocale.h"

#include <clocale>

namespace TesselMail {

const std::string& systemLocale() {
    static const std::string locale = [] {
        const char* const name = std::setlocale(LC_TIME, nullptr);
        const std::string whole = name ? name : "";
        const std::string locale = whole.substr(0, whole.find_first_of(".@"));
        return locale.empty() || locale == "C" || locale == "POSIX" ? std::string("en_US") : locale;
    }();
    return locale;
}

} // namespace TesselMail
