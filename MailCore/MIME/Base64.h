#pragma once

#include "MailCore/Platform/Bytes.h"

#include <optional>
#include <string>
#include <string_view>

/// Standard Base64 (RFC 4648 §4).
namespace MailCore::Base64 {

/// Decodes `text`, skipping every character outside the alphabet (RFC 2045 §6.8). Absent when what remains is
/// not valid: groups of four characters, the last one ending in at most two "=", none elsewhere.
[[nodiscard]] std::optional<Bytes> decode(std::string_view text);
/// With padding and no line breaks.
[[nodiscard]] std::string encode(ByteView bytes);

} // namespace MailCore::Base64
