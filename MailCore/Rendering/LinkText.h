#pragma once

#include <string_view>

namespace MailCore {

/// Whether people who read `visible`, the text of a link, would expect another host than the one `address`
/// names: whether the text names hosts, as addresses, with "www." or as bare domains, and none of them is the
/// address's own, above it or below it. Of the text at most 2 KiB count.
bool leadsElsewhere(std::string_view visible, std::string_view address);

} // namespace MailCore
