#include "MailCore/MIME/QuotedPrintable.h"

#include <gtest/gtest.h>

#include <string>

using namespace MailCore;

namespace {

std::string undone(std::string_view text, bool header) {
    return std::string(charsOf(MIME::quotedPrintable(bytesOf(text), header)));
}

} // namespace

TEST(QuotedPrintable, UndoesEscapesAndKeepsWhatIsNone) {
    struct Row {
        std::string_view name;
        std::string_view text;
        std::string_view body;
        std::string_view header;
    };
    const Row rows[] = {
        {"escapes in both cases and a soft break", "=41=3d=\r\nB", "A=B", "A=B"},
        {"a soft break of LF", "a=\nb", "ab", "ab"},
        {"no hexadecimal digits", "=4G=G4", "=4G=G4", "=4G=G4"},
        {"an escape inside a broken one", "==41", "=A", "=A"},
        {"cut after the mark", "a=", "a=", "a="},
        {"cut after one digit", "a=4", "a=4", "a=4"},
        {"cut inside a soft break", "a=\r", "a=\r", "a=\r"},
        {"CR alone", "=\rab", "=\rab", "=\rab"},
        {"blanks before a line break", "= \r\na \r\n", "= \r\na \r\n", "= \r\na \r\n"},
        {"an underscore", "a_b=5F", "a_b_", "a b_"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(undone(row.text, false), row.body);
        EXPECT_EQ(undone(row.text, true), row.header);
    }
}
