#include "MailCore/Sources/ArchiveLines.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/SourceFile.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using Testing::TemporaryFolder;

struct Line {
    std::string prefix;
    ByteOffset start = 0;
    ByteOffset end = 0;
    bool truncated = false;
    bool operator==(const Line&) const = default;
};

std::vector<Line> allLines(const std::string& content, std::size_t limit, std::string_view beginning = {}) {
    const TemporaryFolder folder;
    const FileHandle handle = MailReader::openSource(folder.write("a", content));
    ArchiveLines lines(handle, never);
    std::vector<Line> all;
    for (;;) {
        const auto line = beginning.empty() ? lines.next(limit) : lines.nextBeginning(beginning, limit);
        if (!line) return all;
        all.push_back({std::string(charsOf(line->prefix)), line->start, line->end, line->truncated});
    }
}

TEST(ArchiveLineReading, GivesEveryLineWithItsPlace) {
    const std::vector<Line> expected = {
        {"ab\n", 0, 3, false}, {"\n", 3, 4, false}, {"a long", 4, 15, true}, {"last", 15, 19, false}};
    EXPECT_EQ(allLines("ab\n\na long one\nlast", 6), expected);
    EXPECT_EQ(allLines("", 6), std::vector<Line>{});
    // A line as long as the limit, line end included, is whole.
    EXPECT_EQ(allLines("12345\n", 6), (std::vector<Line>{{"12345\n", 0, 6, false}}));
    EXPECT_EQ(allLines("123456\n", 6), (std::vector<Line>{{"123456", 0, 7, true}}));
}

TEST(ArchiveLineReading, CrossesChunksWithoutLosingAByte) {
    // Lines placed at every distance from the chunk's end.
    constexpr std::size_t chunk = MailReader::readChunk;
    for (std::size_t distance = 0; distance < 12; ++distance) {
        SCOPED_TRACE(distance);
        const std::string filler = std::string(chunk - distance - 1, 'x') + '\n';
        const std::string content = filler + "From abc\n" + "tail\n" + "From end";
        const ByteOffset start = filler.size();
        const std::vector<Line> expected = {{"From abc\n", start, start + 9, false},
                                            {"From end", start + 14, start + 22, false}};
        EXPECT_EQ(allLines(content, 1'000, "From "), expected);
        EXPECT_EQ(allLines(content, 4).size(), 4U);
    }
    const std::vector<Line> huge = allLines(std::string(3 * chunk, 'y') + "\nz", 10);
    EXPECT_EQ(huge, (std::vector<Line>{{"yyyyyyyyyy", 0, 3 * chunk + 1, true},
                                       {"z", 3 * chunk + 1, 3 * chunk + 2}}));
}

TEST(ArchiveLineReading, ReturnsAPushedBackLineAgain) {
    const TemporaryFolder folder;
    const FileHandle handle = MailReader::openSource(folder.write("a", "one\nFrom two\nthree\n"));
    ArchiveLines lines(handle, never);
    const auto first = lines.next(100);
    lines.pushBack(*first);
    EXPECT_EQ(charsOf(lines.next(100)->prefix), "one\n");
    const auto second = lines.next(100);
    lines.pushBack(*second);
    EXPECT_EQ(charsOf(lines.nextBeginning("From ", 100)->prefix), "From two\n");
    lines.pushBack(*lines.next(100));
    EXPECT_FALSE(lines.nextBeginning("From ", 100));
}

TEST(ArchiveLineReading, StopsWhenCancelled) {
    const TemporaryFolder folder;
    const FileHandle handle = MailReader::openSource(folder.write("a", "one\ntwo\n"));
    int asked = 0;
    const Cancelled afterOne = [&] { return ++asked > 2; };
    ArchiveLines lines(handle, afterOne);
    EXPECT_TRUE(lines.next(10));
    EXPECT_THROW(lines.next(10), MailError);
}

} // namespace
} // namespace MailCore
