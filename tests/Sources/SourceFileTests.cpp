#include "MailCore/Sources/SourceFile.h"

#include "tests/Support/Errors.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace Testing;

TEST(SourceFiles, AreLocalAndHoldNoNUL) {
    struct Case {
        std::string_view address;
        bool isLocal;
    };
    const Case cases[] = {
        {"file:///a", true},           {"file://localhost/a", true},  {"file:/a", true},
        {"file://elsewhere/a", false}, {"http://localhost/a", false}, {"file:///a%00b", false},
        {"file:///a%2500b", true},     {"mailto:a", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MailReader::isLocalFile(URL::parse(c.address).value()), c.isLocal) << c.address;
    EXPECT_FALSE(MailReader::isLocalFile(URL()));
    EXPECT_FALSE(MailReader::isLocalFile(URL::file(std::string_view("/a\0b", 4))));
}

TEST(SourceFiles, AreReadInWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const std::string content(300'000, 'x'); // over two chunks
    const FileHandle handle = MailReader::openSource(folder.write("a", content));
    EXPECT_EQ(charsOf(MailReader::read(handle, 300'000, never)), content);
    handle.seek(0);
    EXPECT_EQ(errorOf([&] { MailReader::read(handle, 300'001, never); }), "malformed");
    handle.seek(0);
    EXPECT_TRUE(MailReader::read(handle, 0, never).empty());
    EXPECT_TRUE(MailReader::read(handle, -1, never).empty());
    int polls = 0;
    EXPECT_EQ(errorOf([&] { MailReader::read(handle, 300'000, [&] { return ++polls == 3; }); }), "cancelled");
}

} // namespace
} // namespace MailCore
