#include "MailCore/Search/CaseFolding.h"

#include "MailCore/Platform/UTF8.h"
#include "tests/Search/PlainAlgorithm.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace MailCore {
namespace {

using namespace CaseFolding;

std::u32string values(std::string_view text, Rules rules = Rules::standard) {
    std::u32string result;
    for (const Element element : folded(text, rules)) result += element.value();
    return result;
}

std::u32string plainlyDecomposed(std::string_view text) {
    const std::string decomposed = Testing::decomposed(text);
    std::u32string result;
    for (std::size_t at = 0; at < decomposed.size();) result += Text::next(decomposed, at);
    return result;
}

TEST(CaseFolding, DecomposesAndFolds) {
    EXPECT_EQ(values("Ab1"), U"ab1");
    EXPECT_EQ(values("ß"), U"ss");
    EXPECT_EQ(values("É"), U"e\u0301");
    EXPECT_EQ(values("e\u0301\u0323"), U"e\u0323\u0301"); // marks in canonical order
    EXPECT_EQ(values("\u212A"), U"k");
    EXPECT_EQ(values("한"), U"\u1112\u1161\u11AB");
    EXPECT_EQ(values("ﬁ"), U"fi");
    EXPECT_EQ(values("\xFF"), U"\uFFFD");
    EXPECT_EQ(values(""), U"");
}

TEST(CaseFolding, SortsMarksHoweverManyThereAre) {
    for (const std::size_t count : {std::size_t{2}, std::size_t{64}, std::size_t{66}, std::size_t{300}}) {
        std::string text = "a";
        for (std::size_t mark = 0; mark < count; ++mark) // of three classes, two of one class
            text += std::array{"\u0301", "\u0323", "\u0300", "\u0327"}[mark * 7 % 11 % 4];
        EXPECT_EQ(values(text), plainlyDecomposed(text)) << count;
    }
}

TEST(CaseFolding, KeepsTheLettersOfTurkishApart) {
    EXPECT_EQ(values("Iİiı", Rules::standard), U"ii\u0307iı");
    EXPECT_EQ(values("Iİiı", Rules::turkic), U"ıiiı");
    EXPECT_EQ(values("I\u0307", Rules::turkic), U"i");
    EXPECT_EQ(values("I\u0323\u0307", Rules::turkic), U"i\u0323");
    for (const std::string_view locale : {"tr", "tr_TR", "az-Latn", "az_Latn_AZ", "tr.UTF-8", "tr@x"})
        EXPECT_EQ(rulesOf(locale), Rules::turkic) << locale;
    for (const std::string_view locale : {"", "C", "en_TR", "en_US_POSIX", "trv_TW", "de"})
        EXPECT_EQ(rulesOf(locale), Rules::standard) << locale;
}

TEST(CaseFolding, TellsWhereCharactersBeginInAnExpansion) {
    std::vector<bool> begins;
    for (const Element element : folded("aßé", Rules::standard)) begins.push_back(element.beginsCharacter());
    EXPECT_EQ(begins, (std::vector<bool>{true, true, false, true, true}));
}

TEST(CaseFolding, TellsWhereLettersGoOn) {
    const auto behind = [](std::string_view before, std::string_view after) {
        return goesOn(std::string(before).append(after), before.size());
    };
    EXPECT_FALSE(behind("a", "b"));
    EXPECT_FALSE(behind("a", ""));
    EXPECT_FALSE(behind("a", "é"));
    EXPECT_TRUE(behind("a", "\u0301"));
    EXPECT_TRUE(behind("👍", "\U0001F3FD"));
    EXPECT_TRUE(behind("👨\u200D", "👩"));
    EXPECT_FALSE(behind("👨", "👩"));
    EXPECT_TRUE(behind("\u1100", "\u1161"));
    EXPECT_TRUE(splitsSyllable("\u1100\u1161", 3));
    EXPECT_FALSE(splitsSyllable("\u1100a", 3));
}

} // namespace
} // namespace MailCore
