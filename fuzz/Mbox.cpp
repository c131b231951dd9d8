#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/MailReader.h"

#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

using namespace MailCore;

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// A file in memory that has a path, named so that it is taken as an archive.
class MemoryFile {
public:
    explicit MemoryFile(ByteView bytes) : handle_(::memfd_create("archive", MFD_CLOEXEC)) {
        handle_.writeAll(bytes);
        link_ = "/tmp/tessel-fuzz-" + UUID::random().text() + ".mbox";
        const std::string descriptor = "/proc/self/fd/" + std::to_string(handle_.descriptor());
        require(::symlink(descriptor.c_str(), link_.c_str()) == 0);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::unlink(link_.c_str()); }

    URL url() const { return URL::file(link_); }

private:
    FileHandle handle_;
    std::string link_;
};

} // namespace

/// Entries lie in order inside the file, do not overlap, are delivered exactly once, and each can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView bytes = std::as_bytes(std::span(data, size));
    const MemoryFile file(bytes);
    std::size_t delivered = 0;
    try {
        const MailCollection collection = MailReader::collection(
            file.url(), never, [](std::size_t) {}, {Limits::messages, Limits::indexBytes},
            [&](std::span<const SharedEntry> batch) { delivered += batch.size(); });
        require(delivered == collection.entries.size());
        ByteOffset end = 0;
        for (const SharedEntry& entry : collection.entries) {
            require(entry->offset >= end && entry->length > 0);
            end = entry->offset + static_cast<ByteOffset>(entry->length);
            require(end <= size);
            try {
                MailReader::message(*entry, never);
            } catch (const MailError&) {
            }
        }
    } catch (const MailError& error) {
        require(error == MailError::malformed);
    }
    return 0;
}
