#pragma once

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/UTF8.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What well-formed UTF-8 text needs from Unicode: white space, control characters, case.
namespace MailCore::Text {

/// White space and line breaks (Unicode Z*, U+0009 to U+000D, U+0085).
constexpr bool isWhitespace(char32_t codePoint) noexcept {
    if (codePoint < 0x80) return codePoint == ' ' || (codePoint >= '\t' && codePoint <= '\r');
    return codePoint == 0x85 || codePoint == 0xA0 || codePoint == 0x1680 ||
           (codePoint >= 0x2000 && codePoint <= 0x200A) || codePoint == 0x2028 || codePoint == 0x2029 ||
           codePoint == 0x202F || codePoint == 0x205F || codePoint == 0x3000;
}
/// U+000A to U+000D, U+0085, U+2028 and U+2029.
constexpr bool isLineBreak(char32_t codePoint) noexcept {
    return (codePoint >= '\n' && codePoint <= '\r') || codePoint == 0x85 || codePoint == 0x2028 ||
           codePoint == 0x2029;
}
/// Control and format characters (Unicode Cc and Cf), among them U+0000, line breaks and direction marks.
bool isControl(char32_t codePoint) noexcept;
/// Embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069), with which a text turns around
/// what follows it.
constexpr bool setsDirection(char32_t codePoint) noexcept {
    return (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

/// `text` without the code points at both ends for which `isTrimmed(codePoint)` holds; points into it.
template <typename Predicate>
constexpr std::string_view trimmedOf(std::string_view text, Predicate isTrimmed) noexcept {
    while (!text.empty()) {
        std::size_t at = 0;
        if (!isTrimmed(next(text, at))) break;
        text.remove_prefix(at);
    }
    while (!text.empty()) {
        const std::size_t start = codePointStart(text, text.size() - 1);
        std::size_t at = start;
        if (!isTrimmed(next(text, at))) break;
        text.remove_suffix(text.size() - start);
    }
    return text;
}
/// `text` without white space and line breaks at both ends; points into it.
std::string_view trimmed(std::string_view text) noexcept;
/// `text` without the characters of `set` (ASCII) at both ends; points into it.
std::string_view trimmed(std::string_view text, std::string_view set) noexcept;
/// `text` without control and format characters at both ends; points into it.
std::string_view trimmedControls(std::string_view text) noexcept;
/// `text` with every run of white space as one blank, none at its ends.
std::string withSingleBlanks(std::string_view text);

/// Unicode lower case, independent of locale; ASCII takes a short way.
std::string lowered(std::string_view text);
std::string uppered(std::string_view text);
/// ASCII letters compared without case, everything else as bytes.
constexpr bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept {
    if (left.size() != right.size()) return false;
    for (std::size_t index = 0; index < left.size(); ++index) {
        if (ASCII::lowered(left[index]) != ASCII::lowered(right[index])) return false;
    }
    return true;
}

/// A whole decimal integer with an optional sign and nothing else; absent when it is none or does not fit.
std::optional<std::int64_t> integer(std::string_view text) noexcept;

} // namespace MailCore::Text
