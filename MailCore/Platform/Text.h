#pragma once

#include "MailCore/Platform/Bytes.h"

#include <optional>
#include <string>
#include <string_view>

/// What UTF-8 text needs from Unicode. "Characters" are user-perceived ones (extended grapheme clusters).
namespace MailCore::Text {

/// `bytes` read as UTF-8, each maximal invalid sequence replaced by U+FFFD.
std::string repaired(ByteView bytes);
/// `bytes` read as UTF-16LE without a mark; absent when they are not well-formed (an odd byte, a surrogate
/// without its other half).
std::optional<std::string> fromUTF16LE(ByteView bytes);
/// The same, with U+FFFD for a byte with which no character begins, which is skipped, and for an incomplete
/// end: what the system's converter makes of them.
std::string repairedUTF16LE(ByteView bytes);
/// Whether `bytes` are well-formed UTF-8 (no surrogates, nothing above U+10FFFF).
bool isValid(ByteView bytes) noexcept;

/// The first `count` characters of `text`; points into it. Linear in what it returns.
std::string_view prefix(std::string_view text, std::size_t count);
/// The length in bytes of the first character of `text`; 0 when it is empty.
std::size_t firstCharacter(std::string_view text);

/// Decodes the code point that begins at `at`, which lies inside well-formed `text`, and moves `at` past it.
char32_t next(std::string_view text, std::size_t& at) noexcept;
/// Appends `codePoint`, a Unicode scalar value, as UTF-8.
void append(std::string& text, char32_t codePoint);

/// White space and line breaks (Unicode Z*, U+0009 to U+000D, U+0085).
bool isWhitespace(char32_t codePoint) noexcept;
/// Control and format characters (Unicode Cc and Cf), among them U+0000, line breaks and direction marks.
bool isControl(char32_t codePoint) noexcept;
/// `text` without white space and line breaks at both ends; points into it.
std::string_view trimmed(std::string_view text) noexcept;
/// Embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069), with which a text turns around
/// what follows it.
bool setsDirection(char32_t codePoint) noexcept;

/// `text` without the characters of `set` (ASCII) at both ends; points into it.
std::string_view trimmed(std::string_view text, std::string_view set) noexcept;

/// `text` without control and format characters at both ends; points into it.
std::string_view trimmedControls(std::string_view text) noexcept;

/// Unicode lower case, independent of locale; ASCII takes a short way.
std::string lowered(std::string_view text);
std::string uppered(std::string_view text);
/// ASCII letters compared without case, everything else as bytes.
bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept;

constexpr char lowered(char byte) noexcept {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
}

/// A whole decimal integer with an optional sign and nothing else; absent when it is none or does not fit.
std::optional<std::int64_t> integer(std::string_view text) noexcept;

} // namespace MailCore::Text
