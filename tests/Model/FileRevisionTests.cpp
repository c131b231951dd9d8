#include "MailCore/Model/FileRevision.h"

#include "MailCore/Model/MailError.h"

#include <gtest/gtest.h>

#include <fcntl.h>
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

} // namespace
} // namespace MailCore
