#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/Bytes.h"

#include <vector>

/// Entities, which are messages and their parts: header fields above, a body below.
namespace MailCore::MIME {

/// What is decoded of a message: the whole, or its texts alone.
enum class Wanted { everything, texts };

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

/// The halves of an entity, with the fields that are wanted.
struct CutEntity {
    Split halves;
    std::size_t fieldCount; // wanted or not
};

/// The same as `split`; with Wanted::texts only the fields that tell anything about texts are kept.
[[nodiscard]] CutEntity cut(ByteView entity, Wanted wanted);

} // namespace MailCore::MIME
