#include "MailCore/Sources/SourceFile.h"

#include "MailCore/Model/MailError.h"

#include <algorithm>
#include <fcntl.h>

namespace MailCore::MailReader {

bool isLocalFile(const URL& url) {
    if (!url.isFile()) return false;
    if (url.path().find('\0') != std::string::npos) return false; // written "%00"
    return !url.host() || url.host()->empty() || *url.host() == "localhost";
}

FileHandle openSource(const URL& url) {
    if (!isLocalFile(url)) throw MailError(MailError::malformed);
    FileHandle handle(::open(url.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!handle.isOpen()) throw MailError(MailError::malformed);
    FileRevision::capture(handle);
    return handle;
}

Bytes read(const FileHandle& handle, std::int64_t count, const Cancelled& cancelled) {
    Bytes bytes;
    if (count <= 0) return bytes;
    bytes.resize(static_cast<std::size_t>(count));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        if (cancelled()) throw MailError(MailError::cancelled);
        const std::size_t step = std::min(bytes.size() - filled, readChunk);
        const std::size_t got = handle.read(std::span(bytes).subspan(filled, step));
        if (got == 0) throw MailError(MailError::malformed);
        filled += got;
    }
    return bytes;
}

void requireUnchanged(const FileHandle& handle, const FileRevision& revision) {
    if (FileRevision::capture(handle) != revision) throw MailError(MailError::sourceChanged);
}

} // namespace MailCore::MailReader
