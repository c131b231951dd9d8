#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Rendering/ElementAttributes.h"
#include "MailCore/Rendering/RenderedMail.h"

#include <optional>
#include <string>
#include <string_view>

/// Rebuilds message HTML from a fixed list of elements and attributes. Nothing of the message's markup is
/// passed on as it stands, and no address but data: images reaches the result. Whatever is not accepted or
/// lies beyond a limit is dropped; nothing here throws for what a message holds, and every operation is
/// linear in its input.
namespace MailCore::SafeHTML {

/// The message made safe to show: its HTML, or its plain text when there is none. Takes the first 4,194,304
/// characters of the HTML and 50,000 tags of them; gives a balanced fragment of at most 8,388,608 bytes, at
/// most 100 elements deep, and inlines images the message carries up to 4,194,304 bytes in all. Links become
/// "tessel-link://" and a token that differs from call to call.
RenderedMail render(const MailMessage& message);

/// The text of an HTML document for searching: its first 4,194,304 bytes with tags, scripts, styles and the
/// head each replaced by a space, and character references decoded.
std::string searchableText(std::string_view html);

/// `text` with the character references of the WHATWG HTML standard decoded, of which only those with ";"
/// count; unknown names and numbers that are no scalar value stay as written.
std::string entities(std::string_view text);

/// The first 80 attributes of the inside of a tag, after its name; the first of a name wins, and one without
/// "=" has the empty value.
Attributes attributes(std::string_view text);

/// The address in the form it is kept in, when it may be kept: at most 8,192 bytes without control
/// characters, an https, http, mailto, tel or sms address (RFC 3986) without user name and password, with a
/// host where there has to be one. What an address may not hold is percent-encoded, a host outside ASCII put
/// in its ASCII form (UTS #46); everything else stays as given.
std::optional<std::string> safeLink(std::string_view value);

/// "image/png", "image/jpeg" or "image/gif" by the signature of `data`.
std::optional<std::string_view> rasterType(ByteView data) noexcept;

/// Whether `data` is a single image of 1 to 8,192 pixels each way and 12,000,000 in all, by its header.
bool safeRaster(ByteView data) noexcept;

} // namespace MailCore::SafeHTML
