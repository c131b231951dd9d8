// What is shown of values from mail: whole where it can be laid out, and never longer than that.
#include "TesselMail/Views/DisplayText.h"
#include "tests/Support/Repeated.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace TesselMail::Testing {
namespace {

using MailCore::Testing::repeated;
using testing::EndsWith;

TEST(DisplayText, CutsOnlyWhatCannotBeWrapped) {
    const struct {
        const char* name;
        std::string text;
        bool whole;
    } cases[] = {
        {"a paragraph without blanks", repeated("春节放假通知", 1'000), true},
        {"syllables of Korean", repeated("한국", 3'000), true},
        {"words", repeated("tide ", 3'000), true},
        {"an address", "https://mail.example/?" + repeated("q", 3'900), true},
        {"a word", repeated("q", 4'100), false},
        {"ideographs that are joined", repeated("中\u2060", 4'100), false},
        {"marks on one character", "a" + repeated("\u0301", 70'000), false},
    };
    for (const auto& one : cases) {
        const std::string shown = displayedLines(one.text);
        EXPECT_EQ(shown == one.text, one.whole) << one.name;
        if (!one.whole) {
            EXPECT_THAT(shown, EndsWith("…")) << one.name;
        }
    }
}

TEST(DisplayText, BreaksLinesOfATextWidgetOnlyWhereTheyCannotBeWrapped) {
    for (const std::string& text : {repeated("春节放假通知", 1'000), repeated("tide ", 3'000)})
        EXPECT_EQ(inShortLines(text), text);
    for (const std::string& text : {repeated("q", 50'000), repeated("tide ", 30'000)}) {
        std::string lines = inShortLines(text);
        EXPECT_GT(std::ranges::count(lines, '\n'), 5);
        std::erase(lines, '\n');
        EXPECT_EQ(lines, text);
    }
}

} // namespace
} // namespace TesselMail::Testing
