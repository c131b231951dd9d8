#pragma once

#include "MailCore/MIME/MIME.h"
#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MessageEntry.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/FileHandle.h"

namespace MailCore::MailReader {

/// Reads the texts of one message after the other, for searching. Each message is as safe as with `message`,
/// and fails as it does; what differs is that a file stays open while its messages come one after the other,
/// that memory is used again, and that attachments of MIME messages are not decoded. Serves one thread.
class TextReader {
public:
    /// Borrows `cancelled`, which outlives it.
    explicit TextReader(const Cancelled& cancelled) : cancelled_(cancelled) {}
    TextReader(Cancelled&&) = delete;

    /// The texts of the message of `entry`. Throws what `message` throws for it.
    MIME::SearchedTexts texts(const MessageEntry& entry);
    /// Proves what was read ahead once more: throws MailError::sourceChanged when another file stands at the
    /// address of the last one by now. Called before anything that was read is told to people.
    void confirm() const;

private:
    /// Makes `handle_` the file of `entry`, proven to be the one at its address and the one that was indexed.
    void open(const MessageEntry& entry);
    ByteView range(const MessageEntry& entry);
    void fill(ByteOffset offset, std::size_t length, std::size_t wanted);

    const Cancelled& cancelled_;
    FileHandle handle_;
    URL file_; // the open file
    MessageFormat format_ = MessageFormat::mime;
    FileRevision revision_;
    Bytes buffer_; // what was read last: `filled_` bytes of the open file from `start_` on
    ByteOffset start_ = 0;
    std::size_t filled_ = 0;
    bool readAhead_ = false; // some text came from the buffer since its file was proven to be at its address
};

} // namespace MailCore::MailReader
