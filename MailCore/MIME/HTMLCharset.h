#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace MailCore::MIME {

/// The charset that a `meta` tag in `text`, the beginning of an HTML document, names: the first tag with
/// `charset=LABEL`, in an attribute of its own or inside its content, counts. At most 1,024 characters of a
/// tag are looked at. Takes time linear in `text`.
[[nodiscard]] std::optional<std::string> sniffedCharset(std::string_view text);

} // namespace MailCore::MIME
