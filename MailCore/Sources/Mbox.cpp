#include "MailCore/Sources/Mbox.h"

#include "MailCore/Dates/DateNames.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Sources/HeaderBlock.h"
#include "MailCore/Sources/IndexEntry.h"
#include "MailCore/Sources/MemoryIndex.h"
#include "MailCore/Sources/SourceFile.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace MailCore::MailReader {

namespace {

constexpr std::string_view envelopeStart = "From ";
constexpr std::size_t largestEnvelope = 1'000;

/// One of these stands in the headers of every real message.
constexpr auto knownNames =
    std::to_array<std::string_view>({"from", "subject", "date", "to", "message-id", "content-type"});

bool holdsAny(std::span<const Header> fields, std::span<const std::string_view> names) {
    return std::ranges::any_of(fields, [&](const Header& field) {
        return std::ranges::any_of(
            names, [&](std::string_view name) { return Text::equalsIgnoringCase(field.name, name); });
    });
}

std::optional<std::uint64_t> unsignedInteger(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The end of the body that the message declares; 0 when it declares none that fits the file.
ByteOffset declaredEnd(const HeaderBlock& block, std::uint64_t fileSize) {
    const Header* only = nullptr;
    for (const Header& field : block.fields) {
        if (!Text::equalsIgnoringCase(field.name, "Content-Length")) continue;
        if (only) return 0;
        only = &field;
    }
    if (!only || !block.end || *block.end > fileSize) return 0;
    const std::optional<std::uint64_t> length = unsignedInteger(only->value);
    if (!length || *length > fileSize - *block.end) return 0;
    return *block.end + *length;
}

/// The scan of one archive: each accepted envelope line closes the message before it.
class MboxScan {
public:
    MboxScan(const URL& url, const FileRevision& revision, MemoryIndex& index)
        : url_(url), revision_(revision), size_(static_cast<std::uint64_t>(revision.size)), index_(index) {}

    /// Reads to the end of the file or until the index is full. False when there was no envelope line at all.
    bool run(ArchiveLines& lines) {
        while (const std::optional<ArchiveLine> line = lines.nextBeginning(envelopeStart, largestEnvelope)) {
            if (!isCandidate(*line)) continue;
            const ByteOffset lineStart = line->start;
            const ByteOffset lineEnd = line->end;
            HeaderBlock block = headers(lines);
            if (!holdsAny(block.fields, knownNames)) continue;
            if (!finish(lineStart)) return true;
            skipUntil_ = declaredEnd(block, size_);
            found_ = true;
            start_ = lineEnd;
            current_ = std::move(block.fields);
        }
        finish(size_);
        return found_;
    }

private:
    bool isCandidate(const ArchiveLine& line) const {
        // A line that the header scan gave back was read with a larger limit.
        return line.start >= skipUntil_ && !line.truncated && line.length() <= largestEnvelope &&
               isEnvelope(line.prefix);
    }

    /// Appends the current message, which ends at `end`; false when the index is full.
    bool finish(ByteOffset end) {
        if (!found_ || start_ >= end) return true;
        const MessageRange range{start_, static_cast<std::int64_t>(end - start_)};
        return index_.append(
            indexEntry(static_cast<std::int64_t>(index_.count()), current_, range, url_, revision_));
    }

    const URL& url_;
    const FileRevision& revision_;
    const std::uint64_t size_;
    MemoryIndex& index_;
    bool found_ = false;
    ByteOffset start_ = 0;
    std::vector<Header> current_;
    ByteOffset skipUntil_ = 0;
};

/// An archive without envelope lines is taken as one message, if it begins like one.
MessageEntry wholeFile(const FileHandle& handle, const URL& url, const FileRevision& revision,
                       const Cancelled& cancelled) {
    constexpr auto names = std::to_array<std::string_view>({"from", "subject"});
    handle.seek(0);
    ArchiveLines lines(handle, cancelled);
    const HeaderBlock block = headers(lines);
    if (!holdsAny(block.fields, names)) throw MailError(MailError::malformed);
    return indexEntry(0, block.fields, {0, revision.size}, url, revision);
}

} // namespace

bool isEnvelope(ByteView line) {
    if (!charsOf(line).starts_with(envelopeStart)) return false;
    const std::string repaired = Text::repaired(line.subspan(envelopeStart.size()));
    const std::string_view rest = repaired;
    const auto isSpaceAt = [&](std::size_t at) {
        return at < rest.size() && Text::isWhitespace(Text::next(rest, at));
    };
    if (rest.starts_with('-') && (rest.size() == 1 || isSpaceAt(1))) return true;
    std::size_t word = 0;
    while (word < rest.size() && !isSpaceAt(word)) Text::next(rest, word);
    if (word == 0 || word == rest.size() || rest[word] != ' ') return false;
    const std::string_view weekday = rest.substr(word + 1, 3);
    return std::ranges::find(DateNames::weekdays, weekday) != DateNames::weekdays.end() &&
           isSpaceAt(word + 4);
}

MailCollection indexMbox(const URL& url, const Cancelled& cancelled, const Progress& progress,
                         const IndexLimits& limits, const Batch& batch) {
    const FileHandle handle = openSource(url);
    const FileRevision revision = FileRevision::capture(handle);
    if (revision.size < 1) throw MailError(MailError::malformed);
    MemoryIndex index(url, limits, progress, batch);
    ArchiveLines lines(handle, cancelled);
    MboxScan scan(url, revision, index);
    if (!scan.run(lines)) index.append(wholeFile(handle, url, revision, cancelled));
    if (cancelled()) throw MailError(MailError::cancelled);
    requireUnchanged(handle, revision);
    index.deliver();
    return std::move(index).collection(std::string(SourceKinds::mbox));
}

} // namespace MailCore::MailReader
