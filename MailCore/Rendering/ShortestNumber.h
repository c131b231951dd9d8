#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace MailCore {

/// Appends `number` in the shortest decimal form that reads back as the same number, with a fractional part
/// for whole values, as in "1.0", "0.5"; below 0.0001 and from 10^16 on with an exponent.
inline void appendShortest(std::string& out, double number) {
    std::array<char, 32> digits{};
    const double size = std::abs(number);
    const bool plain = size == 0 || (size >= 1e-4 && size < 1e16);
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                       plain ? std::chars_format::fixed : std::chars_format::scientific);
    const std::string_view text(digits.data(), static_cast<std::size_t>(written.ptr - digits.data()));
    out += text;
    if (plain && text.find('.') == std::string_view::npos) out += ".0";
}

} // namespace MailCore
