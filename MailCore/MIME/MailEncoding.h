#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Bytes in a declared character set become text. Nothing here fails: U+FFFD stands where bytes mean nothing.
namespace MailCore::MailEncoding {

/// `bytes` as the charset label says, which is any text a message had for it (case and white space around it
/// do not matter; empty means UTF-8). Of a label that nobody knows, or of 80 bytes and more, the bytes are
/// taken as UTF-8 when they are valid, else as Windows-1252. Chinese labels all mean GB18030, which contains
/// the others. The result is valid UTF-8.
[[nodiscard]] std::string decode(ByteView bytes, std::string_view charset);
/// The charset label of a Windows code page number; absent for none or 0.
[[nodiscard]] std::optional<std::string> charset(std::optional<std::uint64_t> codepage);

} // namespace MailCore::MailEncoding
