#pragma once

#include "MailCore/Platform/Bytes.h"

namespace MailCore::MIME {

/// Undoes quoted-printable (RFC 2045 §6.7), or with `header` the Q encoding of encoded words (RFC 2047 §4.2),
/// where "_" is a space. Malformed escapes stay as they are.
[[nodiscard]] Bytes quotedPrintable(ByteView bytes, bool header);

} // namespace MailCore::MIME
