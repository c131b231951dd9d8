#pragma once

#include <string>
#include <string_view>

namespace MailCore {

/// What a mailto: link (RFC 6068) carries: for showing and copying, never for sending.
struct MailtoCapture {
    std::string to; // recipients of the path and of "to" items, joined by ", "
    std::string cc; // of "cc" items, in the same way
    std::string bcc;
    std::string subject;  // of the last "subject" item
    std::string body;     // of the last "body" item; the only field with line breaks
    std::string original; // the link as given

    MailtoCapture() = default;
    /// Reads `link`, which is UTF-8. Escapes that are none stay as they are written, a "+" is no space, and
    /// what has no field here is left out. Throws MailError::malformed for a link of more than 131,072 bytes
    /// and for one that is no mailto: link (case does not matter).
    explicit MailtoCapture(std::string_view link);

    /// All of it but the link, for the clipboard: a labelled line for each field that has a value (labels in
    /// English), then an empty line and the body.
    std::string text() const;

    bool operator==(const MailtoCapture&) const = default;
};

} // namespace MailCore
