#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <string>
#include <vector>

/// Internet messages (RFC 5322) and their parts (RFC 2045, RFC 2046).
namespace MailCore::MIME {

/// The two halves of an entity.
struct Split {
    std::vector<Header> headers;
    ByteView body; // points into the entity
};

/// Cuts an entity into header fields and body (RFC 5322 §2.1, unfolding §2.2.3).
/// `entity` is a message or a part as stored, with CRLF or LF line ends. Fields keep order, case and
/// duplicates; values are unfolded and trimmed, their encoded words untouched. `body` is empty when no blank
/// line ends the headers. Reads at most Limits::headers bytes as headers and keeps 2,000 fields; the rest is
/// dropped, as are lines that are no fields. Bytes that are not UTF-8 become U+FFFD; nothing is thrown.
[[nodiscard]] Split split(ByteView entity);

/// Decodes one message. `data` is the message as stored. Texts that are sent as files, and everything that is
/// no text, become attachments; attached messages are not looked into.
/// Throws MailError: `cancelled`; `tooLarge` above Limits::message bytes, or when nested parts add up to more
/// than three times that; `tooMany` above Limits::parts parts or 16 levels; `malformed` when there is no
/// header field at all or the Base64 of a text is broken.
[[nodiscard]] MailMessage parse(ByteView data, const Cancelled& cancelled);

/// What a search looks at in a message; the fields of MailMessage that have these names.
struct Texts {
    std::string to;
    std::string cc;
    std::string plain;
    std::string html;
    bool operator==(const Texts&) const = default;
};

/// Decodes the texts of one message, and nothing of its attachments. Gives what `parse` gives and throws what
/// it throws, but looks at `cancelled` only once in 128 KiB of a part.
[[nodiscard]] Texts texts(ByteView data, const Cancelled& cancelled);

/// Adds what the entity at nesting level `depth` contains to `message`: bodies and attachments. `count`
/// parts have been visited in the whole message and `budget` bytes may still be; both are brought up to date.
/// Throws as `parse`; `message` is then half filled.
void part(ByteView entity, int depth, int& count, std::int64_t& budget, MailMessage& message,
          const Cancelled& cancelled);

} // namespace MailCore::MIME
