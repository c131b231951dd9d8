#include "TesselMail/Views/DisplayText.h"

#include "MailCore/Platform/Text.h"

#include <algorithm>

namespace TesselMail {

std::string displayed(std::string_view text, std::size_t characters) {
    const std::string_view shown = MailCore::Text::prefix(text, characters);
    std::string result = "\u2068";
    result += shown;
    if (shown.size() < text.size()) result += "…";
    result += "\u2069";
    std::ranges::replace_if(
        result, [](char byte) { return byte == '\n' || byte == '\r' || byte == '\0'; }, ' ');
    return result;
}

std::string displayedName(const MailCore::URL& url) {
    return displayed(MailCore::Text::repaired(MailCore::bytesOf(url.lastPathComponent())));
}

std::string displayedPath(const MailCore::URL& url) {
    return displayed(MailCore::Text::repaired(MailCore::bytesOf(url.path())), url.path().size());
}

} // namespace TesselMail
