#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/FileRevision.h"
#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/URL.h"

/// The two rules that every read of a source goes through, and the bounded read itself.
namespace MailCore::MailReader {

/// Whether `url` names a file of this machine: a file URL without a foreign host and without U+0000 in its
/// path.
bool isLocalFile(const URL& url);

/// Opens a source for reading at byte 0. Never blocks on a pipe or device, follows symbolic links.
/// Throws MailError::malformed when it is no local regular file or cannot be opened.
FileHandle openSource(const URL& url);

/// Exactly `count` bytes from the current position, 128 KiB at a time; none when `count` is 0 or less.
/// Throws MailError::cancelled, MailError::malformed at an early end of the file, std::system_error.
Bytes read(const FileHandle& handle, std::int64_t count, const Cancelled& cancelled);

/// Throws MailError::sourceChanged unless `handle` still has the identity `revision`.
void requireUnchanged(const FileHandle& handle, const FileRevision& revision);

/// The largest number of bytes asked of the system at once.
inline constexpr std::size_t readChunk = 131'072;

} // namespace MailCore::MailReader
