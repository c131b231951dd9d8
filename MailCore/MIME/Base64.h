#pragma once

#include "MailCore/Model/Bytes.h"

#include <optional>
#include <string>
#include <string_view>

namespace MailCore::Base64 {

/// Decodes standard Base64 (RFC 4648 §4), skipping every character outside the alphabet; absent when what
/// remains is not valid (complete groups of four, "=" only at the end).
std::optional<Bytes> decode(std::string_view text);
/// Standard Base64 with padding and no line breaks.
std::string encode(ByteView bytes);

} // namespace MailCore::Base64
