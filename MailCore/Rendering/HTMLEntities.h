#pragma once

#include <string_view>

namespace MailCore::HTMLEntities {

/// The text of the named character reference `name`, given without "&" and ";" and with its case, as in
/// "AElig"; empty when there is none. Holds the 2,125 names of the WHATWG HTML standard that end in a
/// semicolon.
std::string_view named(std::string_view name) noexcept;

} // namespace MailCore::HTMLEntities
