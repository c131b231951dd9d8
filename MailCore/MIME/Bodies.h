#pragma once

#include "MailCore/Model/MailMessage.h"

#include <string>
#include <string_view>

/// How the texts of parts become the two bodies of a message, plain and HTML, within Limits::rendered.
namespace MailCore::MIME {

/// Grows `target` by `separator`, unless it is empty, and by as much of `text` as keeps it within
/// Limits::rendered bytes; does nothing when not even one byte would fit. U+FFFD stands for a character cut
/// at the end and may exceed the limit by two bytes. Text in and out is valid UTF-8.
void appendText(std::string_view text, std::string& target, std::string_view separator);

/// Adds the text of one part to the plain body, after an empty line.
void appendPlain(std::string_view text, MailMessage& message);
/// Adds the text of one part to the HTML body, on a line of its own.
void appendHTML(std::string_view text, MailMessage& message);

/// Puts the bodies of an alternative in the place of those before it: the richest form the reader can show
/// comes last (RFC 2046 §5.1.4).
void replaceBodies(MailMessage& message, MailMessage&& alternative);
/// Adds the bodies of a part. Once one part has HTML, all texts are in `html`; `plain` has only what came as
/// plain text.
void appendBodies(MailMessage& message, const MailMessage& child);

} // namespace MailCore::MIME
