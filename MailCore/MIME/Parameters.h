#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/Bytes.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Parameters of header values (RFC 2045, RFC 2231) and file names. Nothing here fails: what is malformed
/// stays as it is written. Text in and out is valid UTF-8.
namespace MailCore::MIME {

using Parameters = std::map<std::string, std::string, std::less<>>;

/// The parameters of a structured value by lower-case name, quotes and quoted pairs undone, RFC 2231 forms as
/// they stand. Of a name given twice the first counts; only 256 parameters are looked at.
[[nodiscard]] Parameters parameters(std::string_view value);
/// One of them; `name` in any case.
[[nodiscard]] std::optional<std::string> parameter(std::string_view name, std::string_view value);

/// The UTF-8 bytes of `text` with %XX escapes undone; an escape that is none stays.
[[nodiscard]] Bytes percentBytes(std::string_view text);
/// The text of an extended value, charset'language'percent-encoded (RFC 2231 §4); without the two apostrophes
/// all of it is percent-encoded UTF-8.
[[nodiscard]] std::string extendedParameter(std::string_view text);
/// The file name that the fields of a part give it, safe to create; empty when they name none.
[[nodiscard]] std::string filename(std::span<const Header> headers);

} // namespace MailCore::MIME
