#pragma once

#include "MailCore/MIME/Entity.h"
#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <string>

/// Internet messages (RFC 5322) and their parts (RFC 2045, RFC 2046).
namespace MailCore::MIME {

/// Decodes one message. `data` is the message as stored. Texts that are sent as files, and everything that is
/// no text, become attachments; attached messages are not looked into.
/// Throws MailError: `cancelled`; `tooLarge` above Limits::message bytes, or when nested parts add up to more
/// than three times that; `tooMany` above Limits::parts parts or 16 levels; `malformed` when there is no
/// header field at all or the Base64 of a text is broken.
[[nodiscard]] MailMessage parse(ByteView data, const Cancelled& cancelled);

/// What a search looks at in a message; the fields of MailMessage that have these names.
struct SearchedTexts {
    std::string to;
    std::string cc;
    std::string plain;
    std::string html;
    bool operator==(const SearchedTexts&) const = default;
};

/// Decodes the texts of one message, and nothing of its attachments. Gives what `parse` gives and throws what
/// it throws, but looks at `cancelled` only once in 128 KiB of a part.
[[nodiscard]] SearchedTexts texts(ByteView data, const Cancelled& cancelled);

/// Adds what the entity at nesting level `depth` contains to `message`: bodies and attachments. `count`
/// parts have been visited in the whole message and `budget` bytes may still be; both are brought up to date.
/// Throws as `parse`; `message` is then half filled.
void part(ByteView entity, int depth, int& count, std::int64_t& budget, MailMessage& message,
          const Cancelled& cancelled);

} // namespace MailCore::MIME
