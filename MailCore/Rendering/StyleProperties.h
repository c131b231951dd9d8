#pragma once

#include "MailCore/Rendering/StyleColors.h"

#include <string>
#include <string_view>

/// The style properties that are kept, each with what it may say.
namespace MailCore::StyleProperties {

/// Appends the value of one declaration, `name` in lower case and `value` trimmed; for "background" and
/// "mso-hide" a whole declaration. False when it is not accepted; `out` may then have grown.
bool append(std::string& out, std::string_view name, std::string_view value, StyleColors& colors);

} // namespace MailCore::StyleProperties
