#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace MailCore {

constexpr bool isASCII(char byte) noexcept {
    return static_cast<unsigned char>(byte) < 0x80;
}

/// The number of ASCII bytes at the start of `text`.
inline std::size_t asciiRun(std::string_view text) noexcept {
    std::size_t at = 0;
    while (text.size() - at >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, 8);
        if ((word & 0x8080808080808080U) != 0) break;
        at += 8;
    }
    while (at < text.size() && isASCII(text[at])) ++at;
    return at;
}

/// Whether `text` holds nothing else. Looks at blocks, which compilers turn into vector instructions.
inline bool isASCII(std::string_view text) noexcept {
    constexpr std::size_t block = 64;
    std::size_t at = 0;
    for (; text.size() - at >= block; at += block) {
        unsigned char bits = 0;
        for (std::size_t index = 0; index < block; ++index)
            bits = static_cast<unsigned char>(bits | static_cast<unsigned char>(text[at + index]));
        if (bits >= 0x80) return false;
    }
    return at + asciiRun(text.substr(at)) == text.size();
}

/// Bytes by what they are in ASCII; those outside it are none of this.
namespace ASCII {

constexpr bool isDigit(char byte) noexcept {
    return byte >= '0' && byte <= '9';
}
constexpr bool isLetter(char byte) noexcept {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}
constexpr bool isAlphanumeric(char byte) noexcept {
    return isLetter(byte) || isDigit(byte);
}
/// A blank, a tab or a line break.
constexpr bool isSpace(char byte) noexcept {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}
constexpr char lowered(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}
constexpr char uppered(char byte) noexcept {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 32) : byte;
}

/// The hexadecimal digits in the order of their values.
inline constexpr std::string_view hexDigits = "0123456789ABCDEF";
/// The value of a hexadecimal digit of either case, -1 for any other byte.
constexpr int hexDigit(char byte) noexcept {
    if (isDigit(byte)) return byte - '0';
    if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
    if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
    return -1;
}
constexpr bool isHexDigit(char byte) noexcept {
    return hexDigit(byte) >= 0;
}

} // namespace ASCII
} // namespace MailCore
