#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/Bytes.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Encoded words (RFC 2047), parameters (RFC 2045, RFC 2231) and file names. Nothing here fails: what is
/// malformed stays as it is written. Text in and out is valid UTF-8.
namespace MailCore::MIME {

/// `value` with its encoded words decoded. The space between two words is dropped, and neighbours in one
/// charset are decoded together, so that a character may be split across them. A word whose Base64 is invalid
/// stays.
[[nodiscard]] std::string headerText(std::string_view value);

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

/// Grows `target` by `separator`, unless it is empty, and by as much of `text` as keeps it within
/// Limits::rendered bytes; does nothing when not even one byte would fit. U+FFFD stands for a character cut
/// at the end and may exceed the limit by two bytes.
void append(std::string_view text, std::string& target, std::string_view separator);
/// The value of the first header of that name (ASCII case ignored), untouched; empty when there is none.
/// Points into `headers`.
[[nodiscard]] std::string_view value(std::string_view name, std::span<const Header> headers) noexcept;

} // namespace MailCore::MIME
