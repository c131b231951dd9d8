// The scanner means what this regular expression means, in linear time.
#include "MailCore/MIME/HTMLCharset.h"

#include "tests/Support/Patterns.h"

#include <gtest/gtest.h>

using namespace MailCore;
using namespace MailCore::Testing;

TEST(HTMLCharset, IsFoundInMetaTagsAsTheExpressionDoes) {
    const std::string distance(1'010, '.');
    const std::string wideDistance = [] {
        std::string text;
        while (text.size() < 4 * 1'012) text += "😀";
        return text;
    }();
    const std::string_view pieces[] = {
        "<meta",  "<MeTa ", "<metal", "charset", " charset=", "charſet = ", ";CHARSET", "=",
        "\"",     "'",      " ",      "\u00A0",  ">",         "u-8",        "K\u212A",  "\u200D",
        "\u0301", "é",      "\n",     distance,  "....",      wideDistance};
    const Pattern pattern(R"re((?i)<meta\b[^>]{0,1024}\bcharset\s*=\s*["']?\s*([a-zA-Z0-9._-]+))re");
    RandomTexts texts(pieces);
    for (int round = 0; round < 30'000; ++round) {
        const std::string text = texts.next(11);
        const auto matches = pattern.matches(text);
        ASSERT_EQ(MIME::sniffedCharset(text), matches.empty() ? std::nullopt : matches[0][1]) << text;
    }
}

TEST(HTMLCharset, FindsNothingInHostileText) {
    for (const std::string_view piece :
         {"<meta ", "<meta charset", "<meta charset=\"", "charset", "=", "<"}) {
        std::string text;
        while (text.size() < 4'000'000) text += piece;
        EXPECT_EQ(MIME::sniffedCharset(text), std::nullopt) << piece;
    }
}
