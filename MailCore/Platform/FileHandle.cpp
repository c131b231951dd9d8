#include "MailCore/Platform/FileHandle.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace MailCore {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

FileHandle::FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle& FileHandle::operator=(FileHandle&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FileHandle::~FileHandle() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t FileHandle::read(std::span<std::byte> into) const {
    for (;;) {
        const ssize_t count = ::read(descriptor_, into.data(), into.size());
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) fail("read");
    }
}

void FileHandle::writeAll(ByteView bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count == 0) errno = EIO; // nothing was taken, and nothing says why
        if (count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail("write");
        }
    }
}

void FileHandle::seek(ByteOffset offset) const {
    if (offset > static_cast<ByteOffset>(INT64_MAX)) {
        errno = EOVERFLOW;
        fail("lseek");
    }
    if (::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) < 0) fail("lseek");
}

void FileHandle::close() {
    // The descriptor is gone after close, whatever it answers.
    if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) fail("close");
}

} // namespace MailCore
