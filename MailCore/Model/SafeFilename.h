#pragma once

#include <string>
#include <string_view>

namespace MailCore {

/// A file name that is safe to create in a folder of the user's choice: no separators, colons or control
/// characters (Unicode Cc and Cf), never empty, "." or "..", at most 220 bytes with a short extension kept
/// and no character split.
std::string safeFilename(std::string_view name);

} // namespace MailCore
