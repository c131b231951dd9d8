#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/FileHandle.h"

#include <optional>
#include <string_view>

namespace MailCore {

/// One line of a file. Positions count from where the reader began.
struct ArchiveLine {
    ByteOffset start = 0;   // first byte
    ByteOffset end = 0;     // just past the last byte, LF included
    ByteView prefix;        // the first bytes of the line; points into the reader until its next call
    bool truncated = false; // the line is longer than its prefix

    ByteOffset length() const noexcept { return end - start; }
};

/// Reads an open file forward, line by line, in memory that does not grow with the line.
/// A line ends just past its LF or at the end of the file; a CR before the LF is part of the line.
/// Borrows `file` and `cancelled`, which outlive it; one reader serves one thread.
class ArchiveLines {
public:
    ArchiveLines(const FileHandle& file, const Cancelled& cancelled);
    ArchiveLines(const FileHandle& file, Cancelled&& cancelled) = delete;

    /// The next line with at most `limit` bytes of it kept (LF included), nothing at the end of the file.
    /// Reads 128 KiB at a time. Throws MailError::cancelled; a failed read as std::system_error.
    std::optional<ArchiveLine> next(std::size_t limit);
    /// The next line that begins with `beginning`; the lines before it are passed over.
    std::optional<ArchiveLine> nextBeginning(std::string_view beginning, std::size_t limit);
    /// Gives `line`, the last one returned, back: the next call returns it again.
    void pushBack(const ArchiveLine& line) { saved_ = line; }

private:
    bool refill();
    void skipOtherLines(std::string_view beginning);

    const FileHandle& file_;
    const Cancelled& cancelled_;
    Bytes chunk_;
    std::size_t filled_ = 0; // bytes of the chunk that were read
    std::size_t cursor_ = 0; // next unread byte of them
    ByteOffset offset_ = 0;  // bytes consumed so far
    Bytes spill_;            // the prefix of a line that crosses chunks
    std::optional<ArchiveLine> saved_;
};

} // namespace MailCore
