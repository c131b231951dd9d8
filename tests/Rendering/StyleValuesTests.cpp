#include "MailCore/Rendering/StyleValues.h"

#include "MailCore/Rendering/MailStyles.h"
#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <string>

using namespace MailCore;

TEST(StyleValues, LimitLengths) {
    const MailCore::Testing::Case<std::string, bool> cases[] = {
        {"as many digits as one likes", "0." + std::string(400, '0') + "1px", true},
        {"more than fits", std::string(400, '9') + "px", false},
        {"the longest", "4096px", true},
        {"just too long", "4096.01px", false},
        {"minus zero", "-0px", true},
        {"a number too small to tell from zero", "." + std::string(400, '0') + "1px", true},
        {"a line end behind the unit", "1px\n", true},
        {"two line ends", "1px\n\n", false},
        {"an exponent", "1e3px", false},
        {"digits of another script", "\u0661px", false},
        {"a unit in upper case", "1PX", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(StyleValues::isLength(c.given, false), c.expected);
    }
    EXPECT_TRUE(StyleValues::isLength("-100px", true));
    EXPECT_FALSE(StyleValues::isLength("-100.1px", true));
    EXPECT_FALSE(StyleValues::isLength("-1px", false));
}

TEST(StyleValues, LimitNames) {
    EXPECT_TRUE(StyleValues::isIdentifier(std::string(100, 'x')));
    EXPECT_FALSE(StyleValues::isIdentifier(std::string(101, 'x')));
    EXPECT_EQ(MailStyles().declarations("font-family:" + std::string(80, 'x')),
              "font-family:'" + std::string(80, 'x') + "',-apple-system,sans-serif");
    EXPECT_EQ(MailStyles().declarations("font-family:" + std::string(81, 'x')), "");
}

TEST(StyleValues, TellWidthsFromWords) {
    EXPECT_TRUE(StyleValues::isWidth("0"));
    EXPECT_TRUE(StyleValues::isWidth("0px"));
    EXPECT_FALSE(StyleValues::isWidth("auto"));
    EXPECT_FALSE(StyleValues::isWidth("-1px"));
}

TEST(StyleValues, TakeBlanksOffButNoLineBreaks) {
    EXPECT_EQ(StyleValues::trimmedOfBlanks(" \t\u00A0a b\u3000"), "a b");
    EXPECT_EQ(StyleValues::trimmedOfBlanks(" \na\u2028 "), "\na\u2028");
    EXPECT_EQ(StyleValues::trimmedOfBlanks(" \u3000"), "");
}

TEST(StyleValues, CountWordsUpToFive) {
    EXPECT_EQ(StyleValues::SpacedWords("").count, 0U);
    EXPECT_EQ(StyleValues::SpacedWords("\u00A0").count, 0U);
    EXPECT_EQ(StyleValues::SpacedWords(" a\u2003b\nc ").count, 3U);
    EXPECT_EQ(StyleValues::SpacedWords("a b c d e f").count, 5U);
}
