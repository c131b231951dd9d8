#include "MailCore/Sources/Maildir.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace MailCore {
namespace {

using namespace Testing;

const std::string letter = "From: a@b\nSubject: Letter\n\nHello\n";

TEST(Maildirs, ListVisibleRegularFilesOfCurAndNew) {
    const TemporaryFolder folder;
    folder.write("cur/1:2,S", letter);
    folder.write("new/2", "");
    folder.write("new/.hidden", letter);
    folder.write("tmp/3", letter);
    folder.write("cur/deeper/4", letter);
    std::filesystem::create_symlink("1:2,S", folder.path("cur/link"));
    const MailCollection collection = collectionOf(folder.url());
    ASSERT_EQ(collection.entries.size(), 2U);
    EXPECT_EQ(collection.kind, "Maildir");
    EXPECT_EQ(collection.url, folder.url());
    EXPECT_EQ(collection.entries[0]->subject.view(), "Letter");
    EXPECT_EQ(collection.entries[1]->file, folder.url("new/2"));
    EXPECT_EQ(collection.entries[1]->subject.view(), ""); // an empty file is a message without texts
    const MailCollection limited = collectionOf(folder.url(), {1, Limits::indexBytes});
    EXPECT_EQ(limited.entries.size(), 1U);
    EXPECT_TRUE(limited.indexLimitReached);
}

} // namespace
} // namespace MailCore
