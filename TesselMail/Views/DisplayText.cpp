#include "TesselMail/Views/DisplayText.h"

#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>

namespace TesselMail {

namespace {

constexpr std::size_t longestWord = 500; // code points

// A character may carry any number of marks, each of which has to be drawn, and a word that has to be wrapped
// takes time that grows with the square of its length.
std::string_view shortened(std::string_view text, std::size_t characters) {
    text = MailCore::Text::prefix(text, characters);
    std::size_t at = 0;
    std::size_t word = 0;
    for (std::size_t count = 0; count < 4 * characters && word <= longestWord && at < text.size(); ++count)
        word = MailCore::Text::isWhitespace(MailCore::Text::next(text, at)) ? 0 : word + 1;
    return text.substr(0, at);
}

std::string withoutDirections(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (!MailCore::Text::setsDirection(MailCore::Text::next(text, at)))
            result += text.substr(start, at - start);
    }
    return result;
}

std::string withoutDirections(std::string_view text, std::size_t characters) {
    const std::string_view shown = shortened(text, characters);
    return withoutDirections(shown) + (shown.size() < text.size() ? "…" : "");
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

std::string spoken(std::string_view text) {
    return withoutDirections(text);
}

std::string displayedName(const MailCore::URL& url) {
    return displayed(url.lastPathComponent());
}

std::string displayedPath(const MailCore::URL& url) {
    return displayed(MailCore::Text::repaired(MailCore::bytesOf(url.path())), url.path().size());
}

} // namespace TesselMail
