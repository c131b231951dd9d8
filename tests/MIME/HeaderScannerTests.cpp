// The scanners mean what these regular expressions mean, in linear time.
#include "MailCore/MIME/HTMLCharset.h"
#include "MailCore/MIME/HeaderScanner.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <random>
#include <span>
#include <vector>

using namespace MailCore;

namespace {

using Groups = std::vector<std::string>; // the whole match and its groups; "-" for one that did not take part

std::vector<Groups> regexMatches(const char* pattern, const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = icu::UnicodeString::fromUTF8(text);
    icu::RegexMatcher matcher(icu::UnicodeString::fromUTF8(pattern), input, 0, status);
    std::vector<Groups> matches;
    while (matcher.find(status)) {
        Groups groups;
        for (int group = 0; group <= matcher.groupCount(); ++group) {
            if (matcher.start(group, status) < 0) {
                groups.push_back("-");
            } else {
                matcher.group(group, status).toUTF8String(groups.emplace_back());
            }
        }
        matches.push_back(groups);
    }
    EXPECT_TRUE(U_SUCCESS(status));
    return matches;
}

/// `count` texts made of `pieces`.
template <typename Check>
void withRandomTexts(std::span<const std::string_view> pieces, int longest, int count, Check check) {
    std::mt19937 random(2'047); // NOLINT: the same texts every time
    for (int round = 0; round < count; ++round) {
        std::string text;
        for (int left = static_cast<int>(random() % static_cast<unsigned>(longest)); left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        check(text);
        if (testing::Test::HasFailure()) return;
    }
}

} // namespace

TEST(HeaderScanner, FindsEncodedWordsAsTheExpressionDoes) {
    constexpr std::string_view pieces[] = {"=", "?", "=?", "?=",     "?q?",    "?B?", "u",   "b",
                                           "Q", " ", "\n", "\u00A0", "\u0085", "é",   "?x?", "=?u?q?a?="};
    withRandomTexts(pieces, 16, 30'000, [](const std::string& text) {
        std::vector<Groups> found;
        std::size_t at = 0;
        while (const auto word = MIME::nextEncodedWord(text, at)) {
            found.push_back({std::string(word->whole), std::string(word->charset),
                             std::string(1, word->encoding), std::string(word->encoded)});
            at = static_cast<std::size_t>(word->whole.data() - text.data()) + word->whole.size();
        }
        EXPECT_EQ(found, regexMatches(R"(=\?([^?\s]+)\?([bBqQ])\?([^?]*)\?=)", text)) << text;
    });
}

TEST(HeaderScanner, FindsParametersAsTheExpressionDoes) {
    constexpr std::string_view pieces[] = {";",  "=",  "\"", "\\",     "a",      "Z*0-_", " ",
                                           "\n", "\r", "é",  "\u2028", "\u3000", ";a=\"", ";b=c"};
    withRandomTexts(pieces, 14, 30'000, [](const std::string& text) {
        std::vector<Groups> found;
        std::size_t at = 0;
        while (const auto parameter = MIME::nextParameter(text, at)) {
            found.push_back({std::string(parameter->key), std::string(parameter->value)});
            at = parameter->end;
        }
        std::vector<Groups> expected;
        const auto matches =
            regexMatches(R"re((?:^|;)\s*([a-zA-Z0-9_*-]+)\s*=\s*(?:"((?:[^"\\]|\\.)*)"|([^;\s]+)))re", text);
        for (const Groups& groups : matches) {
            expected.push_back({groups[1], groups[3] == "-" ? groups[2] : groups[3]});
        }
        EXPECT_EQ(found, expected) << text;
    });
}

TEST(HeaderScanner, FindsCharsetsInMetaTagsAsTheExpressionDoes) {
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
    withRandomTexts(pieces, 12, 30'000, [](const std::string& text) {
        const auto matches =
            regexMatches(R"re((?i)<meta\b[^>]{0,1024}\bcharset\s*=\s*["']?\s*([a-zA-Z0-9._-]+))re", text);
        EXPECT_EQ(MIME::sniffedCharset(text).value_or("none"), matches.empty() ? "none" : matches[0][1])
            << text;
    });
}

TEST(HeaderScanner, TakesLinearTimeOnHostileText) {
    constexpr std::string_view pieces[] = {"=?",         "=?a?q?",  "=?a?q?b",      "=?aaaaaaa ",
                                           ";a=\"",      ";a=\"\\", ";a = ",        ";;;;;;;",
                                           "; a \"\\\n", "<meta ",  "<meta charset"};
    for (const std::string_view piece : pieces) {
        std::string text;
        while (text.size() < 4'000'000) text += piece;
        std::size_t at = 0;
        while (const auto word = MIME::nextEncodedWord(text, at)) at += word->whole.size();
        at = 0;
        while (const auto parameter = MIME::nextParameter(text, at)) at = parameter->end;
        EXPECT_EQ(MIME::sniffedCharset(text), std::nullopt) << piece;
    }
}
