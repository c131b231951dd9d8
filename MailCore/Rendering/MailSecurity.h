#pragma once

#include <string_view>

namespace MailCore::MailSecurity {

/// The reading view's content-blocking rules: nothing is loaded from a network or a file.
inline constexpr std::string_view contentRules =
    R"([{"trigger":{"url-filter":"^https?://"},"action":{"type":"block"}},)"
    R"({"trigger":{"url-filter":"^wss?://"},"action":{"type":"block"}},)"
    R"({"trigger":{"url-filter":"^ftp://"},"action":{"type":"block"}},)"
    R"({"trigger":{"url-filter":"^file://"},"action":{"type":"block"}}])";

} // namespace MailCore::MailSecurity
