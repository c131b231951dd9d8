#include "MailCore/Model/FileRevision.h"

#include "MailCore/Model/MailError.h"

#include <sys/stat.h>

namespace MailCore {

namespace {

std::optional<FileRevision> revisionOf(const struct stat& status) {
    if (status.st_size < 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return FileRevision{
        .device = static_cast<std::int32_t>(status.st_dev),
        .inode = status.st_ino,
        .size = status.st_size,
        .seconds = status.st_mtim.tv_sec,
        .nanoseconds = status.st_mtim.tv_nsec,
    };
}

} // namespace

FileRevision FileRevision::capture(const FileHandle& handle) {
    struct stat status {};
    if (::fstat(handle.descriptor(), &status) == 0) {
        if (const std::optional<FileRevision> revision = revisionOf(status)) return *revision;
    }
    throw MailError(MailError::malformed);
}

std::optional<FileRevision> FileRevision::at(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return revisionOf(status);
}

} // namespace MailCore
