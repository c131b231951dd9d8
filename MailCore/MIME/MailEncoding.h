#pragma once

#include "MailCore/Model/Bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace MailCore {

/// Bytes in a declared character set become text. Nothing here fails: U+FFFD stands where bytes mean nothing.
namespace MailEncoding {

std::string decode(ByteView bytes, std::string_view charset);
std::optional<std::string> charset(std::optional<std::uint64_t> codepage);

} // namespace MailEncoding

namespace MIME {

std::string decode(ByteView bytes, std::string_view charset);
/// `header`: the Q encoding of RFC 2047, where "_" is a space.
Bytes quotedPrintable(ByteView bytes, bool header);
std::string decodeHTML(ByteView bytes, const std::optional<std::string>& charset);

} // namespace MIME
} // namespace MailCore
