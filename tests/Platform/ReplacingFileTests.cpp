#include "MailCore/Platform/ReplacingFile.h"

#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <system_error>

namespace MailCore {
namespace {

using Testing::TemporaryFolder;
using Access = ReplacingFile::Access;

TEST(ReplacingFiles, TakeTheirPlaceWholeAndInOneStep) {
    const TemporaryFolder folder;
    folder.write("out", "before");
    {
        ReplacingFile file(folder.path("out"), Access::owner);
        file.write(bytesOf("aft"));
        EXPECT_EQ(folder.read("out"), "before");
        file.write(bytesOf("er"));
        file.replace();
        EXPECT_EQ(folder.read("out"), "after");
    }
    EXPECT_EQ(folder.read("out"), "after");
    EXPECT_EQ(folder.count(), 1U);
}

TEST(ReplacingFiles, LeaveNothingBehindWhenTheyAreNotComplete) {
    const TemporaryFolder folder;
    folder.write("out", "before");
    { ReplacingFile(folder.path("out"), Access::owner).write(bytesOf("after")); }
    folder.write("folder/file", "");
    EXPECT_THROW(ReplacingFile(folder.path("folder"), Access::owner).replace(), std::system_error);
    EXPECT_THROW(ReplacingFile(folder.path("absent/out"), Access::owner), std::system_error);
    EXPECT_EQ(folder.read("out"), "before");
    EXPECT_EQ(folder.count(), 2U);
}

TEST(ReplacingFiles, AreForTheirOwnerOrForEverybody) {
    const TemporaryFolder folder;
    const mode_t before = ::umask(022);
    for (const auto& [access, mode] : {std::pair(Access::owner, 0600U), {Access::everybody, 0644U}}) {
        ReplacingFile(folder.path("out"), access).replace();
        struct stat status {};
        EXPECT_EQ(::stat(folder.path("out").c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, mode);
    }
    ::umask(before);
}

} // namespace
} // namespace MailCore
