#pragma once

#include <array>
#include <string>
#include <string_view>

namespace MailCore {

/// One line of a page's content security policy (W3C CSP Level 3).
struct PolicyDirective {
    std::string_view name;
    std::string_view sources;
};

/// What the page of a message may load and do: show images that it carries itself, and its own styles.
inline constexpr auto contentPolicy = std::to_array<PolicyDirective>({
    {"default-src", "'none'"},
    {"img-src", "data:"},
    {"style-src", "'unsafe-inline'"},
    {"script-src", "'none'"},
    {"connect-src", "'none'"},
    {"frame-src", "'none'"},
    {"object-src", "'none'"},
    {"base-uri", "'none'"},
    {"form-action", "'none'"},
});

/// The policy as the page declares it.
const std::string& contentPolicyText();

} // namespace MailCore
