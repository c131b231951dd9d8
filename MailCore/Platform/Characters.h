#pragma once

#include <cstddef>
#include <string_view>

/// Characters as people perceive them: extended grapheme clusters (UAX #29).
namespace MailCore::Text {

/// The first `count` characters of `text`; points into it. Linear in what it returns.
std::string_view prefix(std::string_view text, std::size_t count);
/// The length in bytes of the first character of `text`; 0 when it is empty.
std::size_t firstCharacter(std::string_view text);

} // namespace MailCore::Text
