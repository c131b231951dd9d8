#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// UTF-16 as UTF-8 (RFC 2781).
namespace MailCore::Text {

/// `bytes` read as UTF-16LE without a mark; absent when they are not well-formed (an odd byte, a surrogate
/// without its other half).
std::optional<std::string> fromUTF16LE(ByteView bytes);
/// The same, with U+FFFD for a byte that begins no character, which is skipped, and for an incomplete
/// end: what the system's converter makes of them.
std::string repairedUTF16LE(ByteView bytes);
/// How many units `text`, which is UTF-8, has in UTF-16.
std::size_t lengthInUTF16(std::string_view text) noexcept;

} // namespace MailCore::Text
