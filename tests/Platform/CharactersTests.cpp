#include "MailCore/Platform/Characters.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <string>

namespace MailCore {
namespace {

TEST(Characters, AreCutBetweenAsPeopleSeeThem) {
    const std::string family = "👨‍👩‍👧";
    const std::string longMark = "e" + [] {
        std::string marks;
        for (int index = 0; index < 20'000; ++index) marks += "\u0301";
        return marks;
    }();
    struct Case {
        std::string_view name;
        std::string text;
        std::size_t count;
        std::string prefix;
    };
    const Case cases[] = {
        {"short enough", "abc", 5, "abc"},
        {"ASCII", "abcdef", 3, "abc"},
        {"an accent after the cut stays with its letter", "abe\u0301f", 3, "abe\u0301"},
        {"an accent right behind ASCII", "abc\u0301d", 3, "abc\u0301"},
        {"CR LF is one", "a\r\nb", 2, "a\r\n"},
        {"a family is one", family + family, 1, family},
        {"one character longer than any window", longMark + "xy", 2, longMark + "x"},
        {"many characters over windows", std::string(20'000, 'x') + "中" + std::string(20'000, 'y'), 20'001,
         std::string(20'000, 'x') + "中"},
        {"nothing", "abc", 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::prefix(c.text, c.count), c.prefix);
    }
}

TEST(Characters, AreCountedTheSameWithAndWithoutShortcuts) {
    // The first n+1 characters begin with the first n, and add exactly one; whatever stands beside ASCII
    // runs.
    const std::string pieces[] = {"a",
                                  "\r\n",
                                  "\r",
                                  "\n",
                                  "e\u0301",
                                  "中",
                                  "👨‍👩‍👧",
                                  "\u0301",
                                  "한",
                                  "\u0600",
                                  "🇩🇪",
                                  std::string(20, 'x'),
                                  std::string(17, '\r') + "\n",
                                  "ก็"};
    std::uint32_t random = 7;
    std::string text;
    for (int index = 0; index < 3'000; ++index) {
        random = random * 1'664'525 + 1'013'904'223;
        text += pieces[(random >> 16) % std::size(pieces)];
    }
    std::size_t end = 0;
    for (std::size_t count = 0; end < text.size(); ++count) {
        ASSERT_EQ(Text::prefix(text, count).size(), end) << count;
        end += Text::firstCharacter(std::string_view(text).substr(end));
    }
}

} // namespace
} // namespace MailCore
