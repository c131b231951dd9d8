#pragma once

#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/UUID.h"

#include <string>
#include <vector>

namespace MailCore {

/// One header field: the name as it stood, the value unfolded.
struct Header {
    std::string name;
    std::string value;
    bool operator==(const Header&) const = default;
};

struct MailMessage;

/// One attachment of a message.
struct MailAttachment {
    UUID id = UUID::random();
    std::string name;                  // to show, and to offer when saving; a safe file name
    std::string type;                  // media type, as in "image/png"
    Bytes bytes;                       // decoded content
    std::string contentID;             // empty when there is none
    std::vector<MailMessage> embedded; // messages its producer parsed from it
    bool available = true;             // false: listed, but its content could not be decoded
    bool isOLE = false;                // an embedded OLE object of an Outlook message

    /// Whether the attachment can be read as a message.
    bool canPreview() const;
    bool operator==(const MailAttachment&) const;
};

/// One decoded message.
struct MailMessage {
    std::string subject;
    std::string from;
    std::string to;
    std::string cc;
    std::string date; // the Date header as written
    std::string plain;
    std::string html; // not sanitised
    std::vector<Header> headers;
    std::vector<MailAttachment> attachments; // in document order

    /// `plain` with every run of white space as one space, trimmed.
    std::string summary() const;
    bool operator==(const MailMessage&) const = default;
};

} // namespace MailCore
