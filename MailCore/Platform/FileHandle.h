#pragma once

#include "MailCore/Platform/Bytes.h"

#include <string>

namespace MailCore {

/// Owns an open file descriptor and closes it. Failed calls throw std::system_error.
class FileHandle {
public:
    FileHandle() noexcept = default;
    explicit FileHandle(int descriptor) noexcept : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&& other) noexcept;
    ~FileHandle();

    int descriptor() const noexcept { return descriptor_; }
    bool isOpen() const noexcept { return descriptor_ >= 0; }

    /// Reads up to `into.size()` bytes at the current position; 0 at the end of the file.
    std::size_t read(std::span<std::byte> into) const;
    /// Writes all of `bytes`.
    void writeAll(ByteView bytes) const;
    /// Moves to `offset` from the start of the file.
    void seek(ByteOffset offset) const;
    /// Closes now; a close error is thrown. The destructor ignores it.
    void close();

private:
    int descriptor_ = -1;
};

} // namespace MailCore
