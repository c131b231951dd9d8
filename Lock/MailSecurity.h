#pragma once

#include <array>
#include <string>
#include <string_view>

namespace MailCore::MailSecurity {

/// The addresses that the reading view blocks whatever asks for them, as patterns of a content-blocking rule:
/// nothing is loaded from a network or a file.
inline constexpr auto blockedAddresses = std::to_array<std::string_view>({
    "^https?://",
    "^wss?://",
    "^ftp://",
    "^file://",
});

/// The rules that block them, as the web view compiles them: JSON of content-blocking rules.
const std::string& contentRules();

} // namespace MailCore::MailSecurity
