#pragma once

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Bytes.h"

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 as bytes and code points (RFC 3629).
namespace MailCore::Text {

/// U+FFFD, which stands for what is no character.
inline constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// `bytes` read as UTF-8, each maximal invalid sequence replaced by U+FFFD.
std::string repaired(ByteView bytes);
/// Whether `bytes` are well-formed UTF-8 (no surrogates, nothing above U+10FFFF).
bool isValid(ByteView bytes) noexcept;

/// Whether `byte` stands inside the sequence of a code point.
constexpr bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}
/// The start of the code point that the byte at `at` belongs to.
constexpr std::size_t codePointStart(std::string_view text, std::size_t at) noexcept {
    while (at > 0 && isContinuation(text[at])) --at;
    return at;
}
/// The end of the code point that a cut at `at` would split; `at` when it splits none.
constexpr std::size_t codePointEnd(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && isContinuation(text[at])) ++at;
    return at;
}

/// Decodes the code point that begins at `at`, which lies inside well-formed `text`, and moves `at` past it.
constexpr char32_t next(std::string_view text, std::size_t& at) noexcept {
    const auto byte = [&](std::size_t index) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[index]));
    };
    const char32_t lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() - at) {
        at = text.size();
        return 0xFFFD;
    }
    char32_t codePoint = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index)
        codePoint = codePoint << 6 | (byte(at + index) & 0x3F);
    at += length;
    return codePoint;
}

/// Writes `codePoint`, a Unicode scalar value, at `out`, where there is room for four bytes; answers where it
/// ends.
constexpr char* encode(char* out, char32_t codePoint) noexcept {
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3F));
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
    return out;
}
/// Appends `codePoint`, a Unicode scalar value, as UTF-8.
inline void append(std::string& text, char32_t codePoint) {
    char bytes[4] = {};
    text.append(bytes, static_cast<std::size_t>(encode(bytes, codePoint) - bytes));
}
/// `codePoint`, a Unicode scalar value, as a text of its own.
inline std::string textOf(char32_t codePoint) {
    std::string text;
    append(text, codePoint);
    return text;
}

} // namespace MailCore::Text
