#include "MailCore/Sources/Maildir.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Sources/HeaderBlock.h"
#include "MailCore/Sources/IndexEntry.h"
#include "MailCore/Sources/MemoryIndex.h"
#include "MailCore/Sources/SourceFile.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace MailCore::MailReader {

namespace {

struct FolderClose {
    void operator()(DIR* folder) const noexcept { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, FolderClose>;

/// The next entry that is not hidden; nothing at the end.
const dirent* nextVisible(DIR* folder) {
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(folder);
        if (!entry && errno != 0) throw std::system_error(errno, std::generic_category(), "readdir");
        if (!entry || entry->d_name[0] != '.') return entry;
    }
}

bool isRegularFile(DIR* folder, const dirent& entry) {
    if (entry.d_type == DT_REG) return true;
    if (entry.d_type != DT_UNKNOWN) return false;
    struct stat status {};
    if (::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::system_error(errno, std::generic_category(), "fstatat");
    return S_ISREG(status.st_mode);
}

MessageEntry maildirEntry(std::size_t id, const URL& file, const Cancelled& cancelled) {
    const FileHandle handle = openSource(file);
    const FileRevision revision = FileRevision::capture(handle);
    ArchiveLines lines(handle, cancelled);
    const HeaderBlock block = headers(lines);
    requireUnchanged(handle, revision);
    return indexEntry(static_cast<std::int64_t>(id), block.fields, {0, revision.size}, file, revision);
}

} // namespace

MailCollection indexMaildir(const URL& url, const Cancelled& cancelled, const Progress& progress,
                            const IndexLimits& limits, const Batch& batch) {
    static constexpr auto subfolders = std::to_array<std::string_view>({"cur", "new"});
    MemoryIndex index(url, limits, progress, batch);
    bool anyMessage = false;
    for (const std::string_view name : subfolders) {
        const std::string path = url.path() + '/' + std::string(name);
        const Folder folder(::opendir(path.c_str()));
        if (!folder) continue;
        while (const dirent* item = nextVisible(folder.get())) {
            if (cancelled()) throw MailError(MailError::cancelled);
            if (!isRegularFile(folder.get(), *item)) continue;
            anyMessage = true;
            const URL file = URL::file(path + '/' + item->d_name);
            if (!index.append(maildirEntry(index.count(), file, cancelled))) {
                index.deliver();
                return std::move(index).collection(std::string(SourceKinds::maildir));
            }
        }
    }
    if (!anyMessage) throw MailError(MailError::unsupported);
    if (cancelled()) throw MailError(MailError::cancelled);
    index.deliver();
    return std::move(index).collection(std::string(SourceKinds::maildir));
}

} // namespace MailCore::MailReader
