#pragma once

#include "MailCore/Model/Bytes.h"
#include "MailCore/Model/MailMessage.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Encoded words (RFC 2047), parameters (RFC 2045, RFC 2231) and file names. Nothing here fails.
namespace MailCore::MIME {

std::string headerText(std::string_view value);
std::map<std::string, std::string, std::less<>> parameters(std::string_view value);
std::optional<std::string> parameter(std::string_view name, std::string_view value);
Bytes percentBytes(std::string_view text);
std::string extendedParameter(std::string_view text);
std::string filename(std::span<const Header> headers);
/// Grows `target` by `separator` and `text`, within Limits::rendered bytes.
void append(std::string_view text, std::string& target, std::string_view separator);
/// The value of the first header of that name (ASCII case ignored), untouched; empty when there is none.
std::string_view value(std::string_view name, std::span<const Header> headers) noexcept;

} // namespace MailCore::MIME
