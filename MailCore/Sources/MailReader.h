#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/IndexLimits.h"
#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Sources/SourceFile.h"

#include <functional>
#include <span>

/// The engine's front door for sources on disk. Everything is read-only but `exportOriginal`.
namespace MailCore::MailReader {

/// Called with the number of entries indexed so far.
using Progress = std::function<void(std::size_t)>;
/// Receives every entry exactly once, in order.
using Batch = std::function<void(std::span<const SharedEntry>)>;

/// Opens the file or folder `url` and indexes its messages: one for a message file, all for an mbox archive,
/// a folder that holds an "mbox" file, or a Maildir folder. Reads header blocks only. The index stops without
/// an error when `limits` are reached. `progress` and `batch` are called on this thread. Throws
/// MailError::cancelled, malformed (no readable local file, no header), unsupported (extension, or a folder
/// without messages), sourceChanged (modified meanwhile); errors of the file system as std::system_error.
MailCollection collection(const URL& url, const Cancelled& cancelled, const Progress& progress,
                          const IndexLimits& limits, const Batch& batch);

/// The entry whose file, unchanged, proves that `collection` may be used again without indexing: the first
/// one. Null when nothing proves that: of a Maildir, and of a collection that is not complete.
SharedEntry entryOfProof(const MailCollection& collection);
/// Whether the file of such an entry has not changed.
bool isCurrent(const MessageEntry& proof);
/// Both: whether `collection` may be used again without indexing.
bool isCurrent(const MailCollection& collection);

/// Reads and decodes the message of `entry`. Throws MailError::tooLarge above Limits::message, sourceChanged
/// when the file is no longer the one that was indexed, malformed, cancelled; what the decoder throws; errors
/// of the file system as std::system_error.
MailMessage message(const MessageEntry& entry, const Cancelled& cancelled);

/// The original bytes of the message: an EMLX file without its framing, everything else as it stands.
Bytes original(const MessageEntry& entry);

/// Copies the message's original bytes to `destination` through a temporary file beside it, which replaces
/// the destination in one step. Moves at most `chunkSize` bytes (at least 1, at most 128 KiB) at a time.
/// Throws MailError::unsafeDestination when the destination is the source; malformed, sourceChanged,
/// cancelled; errors of the file system as std::system_error. After any failure the destination is as it was.
void exportOriginal(const MessageEntry& entry, const URL& destination, const Cancelled& cancelled,
                    std::int64_t chunkSize);

/// Refuses a destination that is, or lies inside, one of the sources `protecting`, or that exists and is no
/// regular file: MailError::unsafeDestination; malformed when it is no local file.
void validateDestination(const URL& destination, std::span<const URL> protecting);

} // namespace MailCore::MailReader
