#include "MailCore/Model/FileRevision.h"

#include "MailCore/Model/MailError.h"

#include <sys/stat.h>

namespace MailCore {

FileRevision FileRevision::capture(const FileHandle& handle) {
    struct stat status {};
    if (::fstat(handle.descriptor(), &status) != 0 || status.st_size < 0 || !S_ISREG(status.st_mode))
        throw MailError(MailError::malformed);
    return {
        .device = static_cast<std::int32_t>(status.st_dev),
        .inode = status.st_ino,
        .size = status.st_size,
        .seconds = status.st_mtim.tv_sec,
        .nanoseconds = status.st_mtim.tv_nsec,
    };
}

} // namespace MailCore
