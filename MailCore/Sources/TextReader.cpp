#include "MailCore/Sources/TextReader.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/Decoding.h"
#include "MailCore/Sources/SourceFile.h"

#include <algorithm>
#include <utility>

namespace MailCore::MailReader {

namespace {

// Small messages are read with those that follow. A large one is not: its neighbours are as large.
constexpr std::size_t smallMessage = 32'768;

} // namespace

MIME::SearchedTexts TextReader::texts(const MessageEntry& entry) {
    const ByteView data = range(entry);
    return decodedTexts(data, format_, cancelled_);
}

/// The bytes of the entry's range, from a file that is proven to be the one that was indexed; good until the
/// next call. What was read ahead was proven then, and is used as long as the open file has not changed
/// since; that the address still leads to it is asked before each reading, not for each message.
ByteView TextReader::range(const MessageEntry& entry) {
    if (entry.length > Limits::message) throw MailError(MailError::tooLarge);
    const auto length = static_cast<std::size_t>(std::max<std::int64_t>(entry.length, 0));
    const bool isSameFile =
        handle_.isOpen() && entry.revision && *entry.revision == revision_ && entry.file == file_;
    const bool isBuffered = isSameFile && entry.offset >= start_ && entry.offset - start_ <= filled_ &&
                            length <= filled_ - static_cast<std::size_t>(entry.offset - start_);
    if (!isBuffered) {
        const bool isStillThere = isSameFile && FileRevision::at(file_.path()) == revision_;
        if (!isStillThere) open(entry);
        fill(entry.offset, length, isSameFile && length <= smallMessage ? readChunk : length);
    }
    readAhead_ = isBuffered;
    if (entry.revision) requireUnchanged(handle_, *entry.revision);
    return ByteView(buffer_).subspan(static_cast<std::size_t>(entry.offset - start_), length);
}

void TextReader::confirm() const {
    if (!readAhead_) return;
    const auto there = FileRevision::at(file_.path());
    if (there && *there != revision_) throw MailError(MailError::sourceChanged);
}

void TextReader::open(const MessageEntry& entry) {
    confirm();
    handle_ = FileHandle();
    filled_ = 0;
    FileHandle handle = openSource(entry.file);
    const FileRevision revision = FileRevision::capture(handle);
    if (entry.revision && revision != *entry.revision) throw MailError(MailError::sourceChanged);
    if (entry.file != file_) format_ = SourceKinds::formatIn(entry.file);
    file_ = entry.file;
    revision_ = revision;
    handle_ = std::move(handle);
}

/// Reads `length` bytes from `offset` on, and as many of `wanted` as there are.
void TextReader::fill(ByteOffset offset, std::size_t length, std::size_t wanted) {
    filled_ = 0;
    start_ = offset;
    handle_.seek(offset);
    buffer_.clear(); // so that growing copies nothing
    buffer_.resize(wanted);
    std::size_t filled = 0;
    while (filled < wanted) {
        if (cancelled_()) throw MailError(MailError::cancelled);
        const std::size_t step = std::min(wanted - filled, readChunk);
        const std::size_t got = handle_.read(std::span(buffer_).subspan(filled, step));
        if (got == 0) break;
        filled += got;
    }
    if (filled < length) throw MailError(MailError::malformed);
    filled_ = filled;
}

} // namespace MailCore::MailReader
