#pragma once

#include "MailCore/Platform/FileHandle.h"

#include <cstdint>
#include <optional>
#include <string>

namespace MailCore {

/// The identity of a regular file at one moment. A file whose revision differs from the recorded one has
/// changed.
struct FileRevision {
    std::int32_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;        // bytes
    std::int64_t seconds = 0;     // modification time since 1970-01-01 UTC
    std::int64_t nanoseconds = 0; // and its fraction
    bool operator==(const FileRevision&) const = default;

    /// The revision of the open file (fstat). Throws MailError::malformed when it is not a regular file.
    static FileRevision capture(const FileHandle& handle);
    /// The revision of the file at `path`, links followed (stat); absent when no regular file is there.
    static std::optional<FileRevision> at(const std::string& path);
};

} // namespace MailCore
