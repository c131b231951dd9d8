#pragma once

#include "MailCore/MIME/MIME.h"
#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/Bytes.h"

/// The one place that chooses between the decoders.
namespace MailCore::MailReader {

/// The message in the bytes that are stored for it. Throws what the decoder of `format` throws, and
/// MailError::malformed for a broken frame; an Outlook file is decoded to its end before `cancelled` is
/// asked.
MailMessage decoded(ByteView data, MessageFormat format, const Cancelled& cancelled);

/// What a search looks at in the same message. Throws what `decoded` throws.
MIME::SearchedTexts decodedTexts(ByteView data, MessageFormat format, const Cancelled& cancelled);

/// The message without the frame its source has around it; points into `data`. Throws MailError::malformed.
ByteView unframed(ByteView data, MessageFormat format);

} // namespace MailCore::MailReader
