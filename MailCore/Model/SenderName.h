#pragma once

#include <string>
#include <string_view>

namespace MailCore {

/// Who wrote a message, as a list shows it: the name in a decoded From value (RFC 5322 §3.4), without its
/// address, quotes and comments; of several senders the first. The address where it has no name, and where
/// its name could be taken for another address; the value as it is where there is neither.
std::string senderName(std::string_view from);

} // namespace MailCore
