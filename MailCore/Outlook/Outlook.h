#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Outlook/Compound.h"
#include "MailCore/Outlook/Properties.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Outlook message files, MSG and OFT (MS-OXMSG), as the records that MIME messages become too.
namespace MailCore::Outlook {

/// Decodes the message file in `data`: texts, recipients, attachments, attached messages. Compressed RTF and
/// named properties are not read.
/// Throws MailError: `tooLarge` above Limits::message bytes, or when texts and contents read add up to more
/// than three times that; `tooMany` above Limits::parts attachments, 8 levels of attached messages or 256 KiB
/// of properties; `malformed` for a broken container and for a message without subject, text, sender and
/// attachment. What `Compound` throws is thrown on.
[[nodiscard]] MailMessage parse(ByteView data);

/// The message whose entries have `prefix` before their names ("", or "storage/" of an attached message at
/// nesting level `depth`). `inheritedCharset` is that of the message around it, for texts that say none.
/// `budget` bytes may still be read and `parts` attachments were met so far in the whole file; both are
/// brought up to date. Throws as `parse`.
[[nodiscard]] MailMessage message(const Compound& compound, const std::string& prefix,
                                  const std::optional<std::string>& inheritedCharset, int depth,
                                  std::int64_t& budget, int& parts);

/// The fixed-size properties of what has `prefix`; `header` bytes come before the first record. None when the
/// stream is missing or shorter. Throws MailError::tooMany above 262,144 bytes of stream.
[[nodiscard]] Properties properties(const Compound& compound, const std::string& prefix, std::size_t header);

} // namespace MailCore::Outlook
