#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Text as HTML: safe inside content and double-quoted attribute values.
namespace MailCore::SafeHTML {

/// What a byte is written as in HTML; empty for one that stays.
inline constexpr auto escapes = [] {
    std::array<std::string_view, 256> table{};
    table['&'] = "&amp;";
    table['<'] = "&lt;";
    table['>'] = "&gt;";
    table['"'] = "&quot;";
    table['\''] = "&#39;";
    return table;
}();

/// Whether a byte has an escape; smaller, for the search of the next one.
inline constexpr auto isEscaped = [] {
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) table[byte] = !escapes[byte].empty();
    return table;
}();

/// The escape of `byte`; empty when it stays.
constexpr std::string_view escapeOf(char byte) noexcept {
    return escapes[static_cast<unsigned char>(byte)];
}
/// The first byte at or after `at` that does not stay; the end of `text` when there is none.
constexpr std::size_t nextEscaped(std::string_view text, std::size_t at) noexcept {
    while (at < text.size() && !isEscaped[static_cast<unsigned char>(text[at])]) ++at;
    return at;
}

/// `text` with &amp; &lt; &gt; &quot; &#39; for the five characters.
std::string escape(std::string_view text);
/// Appends the same.
void appendEscaped(std::string& out, std::string_view text);

} // namespace MailCore::SafeHTML
