#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/ReplacingFile.h"
#include "MailCore/Sources/Emlx.h"
#include "MailCore/Sources/MailReader.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace MailCore::MailReader {

namespace {

/// The path without "." and "..", symbolic links followed as far as it exists. A link whose target does not
/// exist is followed too: writing through it would make the target.
std::string resolvedPath(const URL& url) {
    constexpr int mostLinks = 40;
    std::filesystem::path path(url.path());
    std::error_code error;
    for (int links = 0; links < mostLinks; ++links) {
        const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
        if (error) return path.lexically_normal().string();
        if (!std::filesystem::is_symlink(resolved, error)) return resolved.string();
        path = resolved.parent_path() / std::filesystem::read_symlink(resolved, error);
    }
    return path.lexically_normal().string();
}

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return status;
}

/// Throws MailError::unsafeDestination when writing to `destination` would touch the source of `entry`.
void protectSource(const URL& destination, const MessageEntry& entry, const FileRevision& source) {
    if (resolvedPath(destination) == resolvedPath(entry.file)) throw MailError(MailError::unsafeDestination);
    std::optional<FileRevision> existing;
    try {
        existing = FileRevision::capture(openSource(destination));
    } catch (const MailError&) {
        return; // nothing there that could be the source
    }
    if (existing->device == source.device && existing->inode == source.inode)
        throw MailError(MailError::unsafeDestination);
}

MessageRange rangeToCopy(const FileHandle& handle, const MessageEntry& entry, const FileRevision& revision) {
    MessageRange range{entry.offset, entry.length};
    if (SourceKinds::formatIn(entry.file) == MessageFormat::emlx)
        range = emlxRange(handle, entry.offset, entry.length);
    const auto size = static_cast<ByteOffset>(revision.size);
    if (range.offset > size || static_cast<ByteOffset>(range.length) > size - range.offset)
        throw MailError(MailError::malformed);
    return range;
}

void copy(const FileHandle& from, const MessageRange& range, const ReplacingFile& to, std::size_t step,
          const Cancelled& cancelled) {
    from.seek(range.offset);
    Bytes buffer(step);
    auto left = static_cast<std::size_t>(range.length);
    while (left > 0) {
        if (cancelled()) throw MailError(MailError::cancelled);
        const std::size_t got = from.read(std::span(buffer).first(std::min(step, left)));
        if (got == 0) throw MailError(MailError::malformed);
        to.write(ByteView(buffer).first(got));
        left -= got;
    }
}

} // namespace

void exportOriginal(const MessageEntry& entry, const URL& destination, const Cancelled& cancelled,
                    std::int64_t chunkSize) {
    if (entry.length < 0 || !isLocalFile(destination)) throw MailError(MailError::malformed);
    const FileHandle handle = openSource(entry.file);
    if (entry.revision) requireUnchanged(handle, *entry.revision);
    const FileRevision revision = FileRevision::capture(handle);
    protectSource(destination, entry, revision);
    const MessageRange range = rangeToCopy(handle, entry, revision);
    ReplacingFile written(destination.path(), ReplacingFile::Access::owner);
    const auto step = static_cast<std::size_t>(
        std::clamp<std::int64_t>(chunkSize, 1, static_cast<std::int64_t>(readChunk)));
    copy(handle, range, written, step, cancelled);
    requireUnchanged(handle, revision);
    protectSource(destination, entry, revision);
    if (cancelled()) throw MailError(MailError::cancelled);
    written.replace();
}

void validateDestination(const URL& destination, std::span<const URL> protecting) {
    if (!isLocalFile(destination)) throw MailError(MailError::malformed);
    const std::string target = resolvedPath(destination);
    const std::optional<struct stat> existing = statusOf(target);
    if (existing && !S_ISREG(existing->st_mode)) throw MailError(MailError::unsafeDestination);
    for (const URL& url : protecting) {
        if (!isLocalFile(url)) continue;
        const std::string source = resolvedPath(url);
        const std::optional<struct stat> status = statusOf(source);
        if (!status) continue;
        const bool isSource = source == target;
        const bool isInside = S_ISDIR(status->st_mode) && (source == "/" || target.starts_with(source + '/'));
        const bool isSameFile =
            existing && existing->st_dev == status->st_dev && existing->st_ino == status->st_ino;
        if (isSource || isInside || isSameFile) throw MailError(MailError::unsafeDestination);
    }
}

} // namespace MailCore::MailReader
