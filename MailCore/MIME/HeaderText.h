#pragma once

#include "MailCore/Model/MailMessage.h"

#include <span>
#include <string>
#include <string_view>

/// Header values and encoded words (RFC 2047). Nothing here fails: what is malformed stays as it is written.
/// Text in and out is valid UTF-8.
namespace MailCore::MIME {

/// `value` with its encoded words decoded. The space between two words is dropped, and neighbours in one
/// charset are decoded together, so that a character may be split across them. A word whose Base64 is invalid
/// stays.
[[nodiscard]] std::string headerText(std::string_view value);

/// The value of the first header of that name (ASCII case ignored), untouched; empty when there is none.
/// Points into `headers`.
[[nodiscard]] std::string_view headerValue(std::string_view name, std::span<const Header> headers) noexcept;

} // namespace MailCore::MIME
