#include "MailCore/Platform/FileHandle.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <system_error>
#include <utility>

namespace MailCore {
namespace {

FileHandle temporaryFile() {
    return FileHandle(::memfd_create("test", MFD_CLOEXEC));
}

bool isDescriptor(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

TEST(FileHandles, WriteAndReadFromAnyPlace) {
    const FileHandle file = temporaryFile();
    file.writeAll(bytesOf("Hello, world"));
    file.seek(7);
    Bytes bytes(3);
    EXPECT_EQ(file.read(bytes), 3U);
    EXPECT_EQ(charsOf(bytes), "wor");
    EXPECT_EQ(file.read(bytes), 2U);
    EXPECT_EQ(charsOf(ByteView(bytes).first(2)), "ld");
    EXPECT_EQ(file.read(bytes), 0U);
    file.seek(100); // behind the end
    EXPECT_EQ(file.read(bytes), 0U);
}

TEST(FileHandles, CloseTheirDescriptorOnceWhereverItWent) {
    FileHandle first = temporaryFile();
    const int descriptor = first.descriptor();
    FileHandle second(std::move(first));
    EXPECT_EQ(second.descriptor(), descriptor);
    EXPECT_FALSE(first.isOpen()); // NOLINT: what is left of it
    FileHandle third;
    third = std::move(second);
    EXPECT_TRUE(isDescriptor(descriptor));
    const int other = [&third] {
        FileHandle replaced = temporaryFile();
        const int number = replaced.descriptor();
        replaced = std::move(third);
        return number;
    }();
    third = FileHandle();
    EXPECT_FALSE(isDescriptor(descriptor));
    EXPECT_FALSE(isDescriptor(other));
}

TEST(FileHandles, ThrowWhatTheSystemSays) {
    FileHandle closed = temporaryFile();
    closed.close();
    EXPECT_FALSE(closed.isOpen());
    Bytes bytes(1);
    EXPECT_THROW(static_cast<void>(closed.read(bytes)), std::system_error);
    EXPECT_THROW(closed.writeAll(bytes), std::system_error);
    EXPECT_THROW(closed.seek(0), std::system_error);
    const FileHandle readOnly(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_THROW(readOnly.writeAll(bytes), std::system_error);
}

} // namespace
} // namespace MailCore
