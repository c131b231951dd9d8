#include "TesselMail/Views/DisplayText.h"

#include "MailCore/Platform/Text.h"

#include <algorithm>

namespace TesselMail {

namespace {

// Directions of the text's own could end ours.
std::string isolated(std::string_view text, std::string_view end) {
    std::string result = "\u2068";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (!MailCore::Text::setsDirection(MailCore::Text::next(text, at)))
            result += text.substr(start, at - start);
    }
    return result.append(end).append("\u2069");
}

} // namespace

std::string displayed(std::string_view text, std::size_t characters) {
    const std::string_view shown = MailCore::Text::prefix(text, characters);
    std::string result = isolated(shown, shown.size() < text.size() ? "…" : "");
    std::ranges::replace_if(
        result, [](char byte) { return byte == '\n' || byte == '\r' || byte == '\0'; }, ' ');
    return result;
}

std::string displayedLines(std::string_view text) {
    std::string result = isolated(text, "");
    std::ranges::replace(result, '\0', ' ');
    return result;
}

std::string displayedName(const MailCore::URL& url) {
    return displayed(url.lastPathComponent());
}

std::string displayedPath(const MailCore::URL& url) {
    return displayed(MailCore::Text::repaired(MailCore::bytesOf(url.path())), url.path().size());
}

} // namespace TesselMail
