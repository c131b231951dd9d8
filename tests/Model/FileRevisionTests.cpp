#include "MailCore/Model/FileRevision.h"

#include "MailCore/Model/MailError.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace MailCore {
namespace {

TEST(FileRevisions, ExistForRegularFilesOnly) {
    int pipes[2] = {-1, -1};
    ASSERT_EQ(::pipe(pipes), 0);
    const FileHandle writing(pipes[1]);
    FileHandle handles[] = {FileHandle(::open("/", O_RDONLY | O_CLOEXEC)),
                            FileHandle(::open("/dev/null", O_RDONLY | O_CLOEXEC)), FileHandle(pipes[0]),
                            FileHandle()};
    for (const FileHandle& handle : handles) {
        try {
            FileRevision::capture(handle);
            ADD_FAILURE();
        } catch (const MailError& error) {
            EXPECT_EQ(error, MailError::malformed);
        }
    }
}

TEST(FileRevisions, DifferForEveryChange) {
    struct Case {
        std::string_view name;
        off_t size;
        timespec time;
    };
    const auto revisionOf = [](const FileHandle& file, off_t size, const timespec& time) {
        const timespec times[] = {{.tv_sec = 5, .tv_nsec = 0}, time};
        EXPECT_EQ(::ftruncate(file.descriptor(), size), 0);
        EXPECT_EQ(::futimens(file.descriptor(), times), 0);
        const FileRevision revision = FileRevision::capture(file);
        EXPECT_EQ(FileRevision::at("/proc/self/fd/" + std::to_string(file.descriptor())), revision);
        return revision;
    };
    const FileHandle file(::memfd_create("a", MFD_CLOEXEC));
    const FileHandle other(::memfd_create("b", MFD_CLOEXEC));
    const timespec before{.tv_sec = 1'000, .tv_nsec = 7};
    const FileRevision revision = revisionOf(file, 3, before);
    for (const Case& c :
         {Case{"a nanosecond later", 3, {.tv_sec = 1'000, .tv_nsec = 8}},
          Case{"a second later", 3, {.tv_sec = 1'001, .tv_nsec = 7}}, Case{"another size", 4, before}})
        EXPECT_NE(revisionOf(file, c.size, c.time), revision) << c.name;
    EXPECT_NE(revisionOf(other, 3, before), revision);
    EXPECT_EQ(revisionOf(file, 3, before), revision);
    EXPECT_EQ(FileRevision::at("/"), std::nullopt);
    EXPECT_EQ(FileRevision::at("/nowhere/at/all"), std::nullopt);
}

} // namespace
} // namespace MailCore
