#pragma once

#include <array>
#include <string_view>

/// The English names in dates (RFC 5322 §3.3).
namespace MailCore::DateNames {

inline constexpr auto weekdays =
    std::to_array<std::string_view>({"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"});
inline constexpr auto months = std::to_array<std::string_view>(
    {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"});

} // namespace MailCore::DateNames
