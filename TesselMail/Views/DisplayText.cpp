#include "TesselMail/Views/DisplayText.h"

#include "MailCore/Platform/Text.h"

#include <algorithm>

namespace TesselMail {

namespace {

// A character may carry any number of marks, each of which has to be drawn.
std::string_view shortened(std::string_view text, std::size_t characters) {
    text = MailCore::Text::prefix(text, characters);
    std::size_t at = 0;
    for (std::size_t codePoint = 0; codePoint < 4 * characters && at < text.size(); ++codePoint)
        MailCore::Text::next(text, at);
    return text.substr(0, at);
}

std::string withoutDirections(std::string_view text, std::size_t characters) {
    const std::string_view shown = shortened(text, characters);
    std::string result;
    for (std::size_t at = 0; at < shown.size();) {
        const std::size_t start = at;
        if (!MailCore::Text::setsDirection(MailCore::Text::next(shown, at)))
            result += shown.substr(start, at - start);
    }
    return shown.size() < text.size() ? result.append("…") : result;
}

} // namespace

// Directions of the text's own could end ours.
std::string displayed(std::string_view text, std::size_t characters) {
    return "\u2068" + displayedAlone(text, characters) + "\u2069";
}

std::string displayedAlone(std::string_view text, std::size_t characters) {
    std::string result = withoutDirections(text, characters);
    std::ranges::replace_if(
        result, [](char byte) { return byte == '\n' || byte == '\r' || byte == '\0'; }, ' ');
    return result;
}

std::string displayedLines(std::string_view text, std::size_t characters) {
    std::string result = withoutDirections(text, characters);
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
