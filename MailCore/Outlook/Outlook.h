#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Outlook/Compound.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Outlook message files, MSG and OFT (MS-OXMSG), as the records that MIME messages become too.
namespace MailCore::Outlook {

/// Decodes the message file in `data`: texts, recipients, attachments, attached messages. Compressed RTF and
/// named properties are not read.
/// Throws MailError: `tooLarge` above Limits::message bytes, or when the streams read add up to more than
/// three times that; `tooMany` above Limits::parts attachments, 8 levels of attached messages or 256 KiB of
/// properties; `malformed` for a broken container and for a message without subject, text, sender and
/// attachment. What `Compound` throws is thrown on.
[[nodiscard]] MailMessage parse(ByteView data);

} // namespace MailCore::Outlook
