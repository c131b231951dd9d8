#include "MailCore/Platform/Text.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(TextTrimming, TakesUnicodeWhiteSpaceOffBothEnds) {
    EXPECT_EQ(Text::trimmed("\u00A0\u3000 a b\u2028\r\n"), "a b");
    EXPECT_EQ(Text::trimmed(" \t\u3000"), "");
    EXPECT_EQ(Text::trimmed("\u200Ba\u200B"), "\u200Ba\u200B"); // invisible, but no space
    EXPECT_EQ(Text::trimmed("<<a>b>", "<>"), "a>b");
}

TEST(TextBlanks, RunTogether) {
    EXPECT_EQ(Text::withSingleBlanks(" a \r\n b\u00A0\u2003c "), "a b c");
    EXPECT_EQ(Text::withSingleBlanks("\n \t"), "");
    EXPECT_EQ(Text::withSingleBlanks("a\u200Bb"), "a\u200Bb");
}

TEST(TextIntegers, AreWholeOrNothing) {
    EXPECT_EQ(Text::integer("12"), 12);
    EXPECT_EQ(Text::integer("+12"), 12);
    EXPECT_EQ(Text::integer("-12"), -12);
    for (const std::string_view text : {"", "+", "-", "+-1", "1 ", " 1", "1a", "0x1", "9223372036854775808"})
        EXPECT_EQ(Text::integer(text), std::nullopt) << text;
}

TEST(TextCase, LowersByUnicodeWithoutALocale) {
    EXPECT_EQ(Text::lowered("ABC"), "abc");
    EXPECT_EQ(Text::lowered("ÄΣI"), "äσi");
    EXPECT_EQ(Text::uppered("straße"), "STRASSE");
    EXPECT_EQ(Text::uppered("az{"), "AZ{");
    EXPECT_TRUE(Text::equalsIgnoringCase("aZ[é", "Az[é"));
    EXPECT_FALSE(Text::equalsIgnoringCase("[", "{")); // which differ as the cases of a letter do
    EXPECT_FALSE(Text::equalsIgnoringCase("é", "É"));
}

} // namespace
} // namespace MailCore
