#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/Decoding.h"
#include "MailCore/Sources/MailReader.h"

namespace MailCore::MailReader {

namespace {

/// The bytes of the entry's range, from a file that is proven to be the one that was indexed.
Bytes source(const MessageEntry& entry, const Cancelled& cancelled) {
    if (entry.length > Limits::message) throw MailError(MailError::tooLarge);
    const FileHandle handle = openSource(entry.file);
    if (entry.revision) requireUnchanged(handle, *entry.revision);
    handle.seek(entry.offset);
    Bytes bytes = read(handle, entry.length, cancelled);
    if (entry.revision) requireUnchanged(handle, *entry.revision);
    return bytes;
}

} // namespace

MailMessage message(const MessageEntry& entry, const Cancelled& cancelled) {
    const Bytes data = source(entry, cancelled);
    return decoded(data, SourceKinds::formatIn(entry.file), cancelled);
}

Bytes original(const MessageEntry& entry) {
    Bytes data = source(entry, never);
    const ByteView payload = unframed(data, SourceKinds::formatIn(entry.file));
    if (payload.size() == data.size()) return data;
    return copyOf(payload);
}

} // namespace MailCore::MailReader
