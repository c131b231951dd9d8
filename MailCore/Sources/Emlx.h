#pragma once

#include "MailCore/Platform/FileHandle.h"
#include "MailCore/Sources/IndexEntry.h"

namespace MailCore::MailReader {

/// The message inside EMLX-framed bytes: a line with its length in bytes, then the message; points into
/// `data`. Throws MailError::malformed when the line is missing from the first 30 bytes, or its number is
/// below 1 or above what follows or what a message may have.
ByteView emlx(ByteView data);

/// The message inside an EMLX range of an open file.
/// Stricter than `emlx`: the count line holds digits and a sign, nothing else. Throws MailError::malformed
/// when the line is missing from the first 30 bytes, or its number is below 1 or above what follows.
MessageRange emlxRange(const FileHandle& handle, ByteOffset offset, std::int64_t length);

} // namespace MailCore::MailReader
