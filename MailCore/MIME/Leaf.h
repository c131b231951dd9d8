#pragma once

#include "MailCore/MIME/Entity.h"

#include <span>
#include <string>
#include <string_view>

/// Parts that hold no further parts: texts and attachments.
namespace MailCore::MIME {

/// What the header fields of a part say about its body.
struct Description {
    std::string type; // lower-case media type
    std::string_view contentType;
    std::string transferEncoding; // lower case
    std::string disposition;      // lower case, with its parameters
    std::string filename;         // empty when there is none
    std::string_view contentID;
};

/// What `headers` say; the views point into them.
[[nodiscard]] Description describe(std::span<const Header> headers);

/// Adds a part with `body` to the bodies of `message` when it is a text to be read, and to its attachments,
/// when these are wanted, otherwise. Throws MailError::malformed when the Base64 of a text is broken.
void addLeaf(const Description& leaf, ByteView body, MailMessage& message, Wanted wanted);

} // namespace MailCore::MIME
