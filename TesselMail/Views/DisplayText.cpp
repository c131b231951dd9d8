#include "TesselMail/Views/DisplayText.h"

#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>

namespace TesselMail {

namespace {

constexpr std::size_t longestWord = 4'000;  // code points
constexpr std::size_t longestLine = 16'000; // bytes

// Between two of which a line may be broken: Chinese characters and the syllables of Korean.
bool isIdeograph(char32_t codePoint) {
    return (codePoint >= 0x3400 && codePoint <= 0x4DBF) || (codePoint >= 0x4E00 && codePoint <= 0x9FFF) ||
           (codePoint >= 0xAC00 && codePoint <= 0xD7A3) || (codePoint >= 0x20000 && codePoint <= 0x3FFFD);
}

// Counts how long the text grows within which no line can be broken. To wrap it takes time that grows with
// the square of its length.
class Word {
public:
    void add(char32_t codePoint) {
        const bool ideograph = isIdeograph(codePoint);
        length_ = MailCore::Text::isWhitespace(codePoint) ? 0 : ideograph && ideograph_ ? 1 : length_ + 1;
        ideograph_ = ideograph;
    }
    bool isLong() const noexcept { return length_ >= longestWord; }

private:
    std::size_t length_ = 0;
    bool ideograph_ = false;
};

// A character may carry any number of marks, each of which has to be drawn.
std::string_view shortened(std::string_view text, std::size_t characters) {
    text = MailCore::Text::prefix(text, characters);
    std::size_t at = 0;
    Word word;
    for (std::size_t count = 0; count < 4 * characters && !word.isLong() && at < text.size(); ++count)
        word.add(MailCore::Text::next(text, at));
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

// A text widget cannot pause within a line.
std::string inShortLines(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    std::size_t line = 0;
    Word word;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        const char32_t character = MailCore::Text::next(text, at);
        result.append(text, start, at - start);
        word.add(character);
        line = character == '\n' ? 0 : line + (at - start);
        if (!word.isLong() && (line < longestLine || !MailCore::Text::isWhitespace(character))) continue;
        result += '\n';
        line = 0;
        word = {};
    }
    return result;
}

std::string displayedWhole(std::string_view text) {
    std::string result = inShortLines(withoutDirections(text));
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
