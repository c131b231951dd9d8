#pragma once

#include "MailCore/Platform/Bytes.h"

#include <optional>
#include <string>

namespace MailCore::MIME {

/// The text of an HTML body. A byte-order mark decides its charset, else the declared `charset`, else what a
/// `meta` tag in the first 8,192 bytes says, else UTF-8. A mark is not part of the text.
[[nodiscard]] std::string decodeHTML(ByteView bytes, const std::optional<std::string>& charset);

} // namespace MailCore::MIME
