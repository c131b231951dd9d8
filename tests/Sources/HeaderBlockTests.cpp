#include "MailCore/Sources/HeaderBlock.h"

#include "MailCore/Sources/SourceFile.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace MailCore {
namespace {

struct Scanned {
    std::vector<std::string> fields; // "name=value"
    std::optional<ByteOffset> end;
    std::string next; // the line that comes after
};

Scanned scanned(const std::string& content) {
    const Testing::TemporaryFolder folder;
    const FileHandle handle = MailReader::openSource(folder.write("a", content));
    ArchiveLines lines(handle, never);
    const MailReader::HeaderBlock block = MailReader::headers(lines);
    Scanned result{.fields = {}, .end = block.end, .next = ""};
    for (const Header& field : block.fields) result.fields.push_back(field.name + "=" + field.value);
    if (const auto line = lines.next(100)) result.next = charsOf(line->prefix);
    return result;
}

TEST(HeaderBlocks, EndAtABlankLineOrALineThatIsNoField) {
    struct Case {
        std::string_view name;
        std::string content;
        std::vector<std::string> fields;
        std::optional<ByteOffset> end;
        std::string_view next;
    };
    const Case cases[] = {
        {"a blank line", "A: b\nC: d\n\nbody\n", {"A=b", "C=d"}, 11, "body\n"},
        {"CR LF", "A: b\r\n\r\nbody", {"A=b"}, 8, "body"},
        {"a line without a colon is given back", "A: b\nbody\nC: d\n", {"A=b"}, std::nullopt, "body\n"},
        {"a continuation needs none", "A: b\n\tc\n\n", {"A=b c"}, 9, ""},
        {"the end of the file", "A: b\nC: d", {"A=b", "C=d"}, std::nullopt, ""},
        {"a blank is no blank line", "A: b\n \nC: d\n\n", {"A=b ", "C=d"}, 13, ""},
        {"nothing", "", {}, std::nullopt, ""},
        {"a blank line first", "\nA: b\n", {}, 1, "A: b\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Scanned found = scanned(c.content);
        EXPECT_EQ(found.fields, c.fields);
        EXPECT_EQ(found.end, c.end);
        EXPECT_EQ(found.next, c.next);
    }
}

TEST(HeaderBlocks, EndAtTheirLimit) {
    const std::string line = "A: " + std::string(1'020, 'x') + "\n"; // 1,024 bytes
    std::string block;
    for (int index = 0; index < 256; ++index) block += line;
    const Scanned exact = scanned(block + "B: c\n\n");
    EXPECT_EQ(exact.fields.size(), 256U);
    EXPECT_EQ(exact.end, std::nullopt);
    EXPECT_EQ(exact.next, "B: c\n");
    const Scanned cut = scanned("B: c\n" + block + "\nbody");
    EXPECT_EQ(cut.fields.size(), 257U);
    EXPECT_LT(cut.fields.back().size(), cut.fields[1].size());
    EXPECT_EQ(cut.end, std::nullopt);
}

} // namespace
} // namespace MailCore
