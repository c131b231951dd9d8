#pragma once

#include <array>
#include <string>
#include <string_view>

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

/// `text` safe inside HTML content and double-quoted attribute values: &amp; &lt; &gt; &quot; &#39;.
std::string escape(std::string_view text);

} // namespace MailCore::SafeHTML
