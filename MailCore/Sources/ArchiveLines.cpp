#include "MailCore/Sources/ArchiveLines.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/SourceFile.h"

#include <algorithm>
#include <cstring>

namespace MailCore {

namespace {

constexpr int lineFeed = '\n';

} // namespace

ArchiveLines::ArchiveLines(const FileHandle& file, const Cancelled& cancelled)
    : file_(file), cancelled_(cancelled), chunk_(MailReader::readChunk) {}

bool ArchiveLines::refill() {
    if (cancelled_()) throw MailError(MailError::cancelled);
    filled_ = file_.read(chunk_);
    cursor_ = 0;
    return filled_ > 0;
}

std::optional<ArchiveLine> ArchiveLines::next(std::size_t limit) {
    if (cancelled_()) throw MailError(MailError::cancelled);
    if (saved_) return std::exchange(saved_, std::nullopt);
    const ByteOffset start = offset_;
    const auto finished = [&](ByteView prefix) {
        return ArchiveLine{start, offset_, prefix, prefix.size() < offset_ - start};
    };
    spill_.clear();
    bool crossesChunks = false;
    for (;;) {
        if (cursor_ == filled_ && !refill()) break;
        const std::byte* const from = chunk_.data() + cursor_;
        const std::size_t rest = filled_ - cursor_;
        const auto* found = static_cast<const std::byte*>(std::memchr(from, lineFeed, rest));
        const std::size_t count = found ? static_cast<std::size_t>(found - from) + 1 : rest;
        cursor_ += count;
        offset_ += count;
        const ByteView kept(from, std::min(limit - spill_.size(), count));
        if (found && !crossesChunks) return finished(kept);
        spill_.insert(spill_.end(), kept.begin(), kept.end());
        crossesChunks = true;
        if (found) return finished(spill_);
    }
    if (offset_ == start) return std::nullopt;
    return finished(spill_);
}

/// Moves over whole lines inside the chunk. This loop sees every line of an archive.
void ArchiveLines::skipOtherLines(std::string_view beginning) {
    const std::byte* const begin = chunk_.data() + cursor_;
    const std::byte* const end = chunk_.data() + filled_;
    const std::byte* at = begin;
    while (static_cast<std::size_t>(end - at) >= beginning.size() &&
           std::memcmp(at, beginning.data(), beginning.size()) != 0) {
        const auto* found =
            static_cast<const std::byte*>(std::memchr(at, lineFeed, static_cast<std::size_t>(end - at)));
        if (!found) break;
        at = found + 1;
    }
    const auto passed = static_cast<std::size_t>(at - begin);
    cursor_ += passed;
    offset_ += passed;
}

std::optional<ArchiveLine> ArchiveLines::nextBeginning(std::string_view beginning, std::size_t limit) {
    for (;;) {
        if (!saved_) skipOtherLines(beginning);
        std::optional<ArchiveLine> line = next(limit);
        if (!line || charsOf(line->prefix).starts_with(beginning)) return line;
    }
}

} // namespace MailCore
