#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The selectors of style rules.
namespace MailCore::StyleSelectors {

/// One selector of at most 300 bytes, made of types, classes, ids and combinators only, its names prefixed
/// with "m-", scoped under PageParts::contentSelector.
std::optional<std::string> scoped(std::string_view text);

} // namespace MailCore::StyleSelectors
