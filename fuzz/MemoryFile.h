#pragma once

#include "MailCore/Platform/FileHandle.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Platform/UUID.h"
#include "fuzz/Support.h"

#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace MailCore::Fuzzing {

/// An open file in memory that holds `bytes`, at its start.
inline FileHandle memoryFile(ByteView bytes) {
    FileHandle handle(::memfd_create("input", MFD_CLOEXEC));
    handle.writeAll(bytes);
    handle.seek(0);
    return handle;
}

/// A file in memory that has a path, named so that it is taken as an archive.
class MemoryFile {
public:
    explicit MemoryFile(ByteView bytes) : handle_(memoryFile(bytes)) {
        link_ = "/tmp/tessel-fuzz-" + UUID::random().text() + ".mbox";
        const std::string descriptor = "/proc/self/fd/" + std::to_string(handle_.descriptor());
        check(::symlink(descriptor.c_str(), link_.c_str()) == 0);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { ::unlink(link_.c_str()); }

    URL url() const { return URL::file(link_); }

private:
    FileHandle handle_;
    std::string link_;
};

} // namespace MailCore::Fuzzing
