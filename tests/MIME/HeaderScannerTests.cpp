// The scanners mean what these regular expressions mean, in linear time.
#include "MailCore/MIME/HeaderScanner.h"

#include "tests/Support/Patterns.h"

#include <gtest/gtest.h>

using namespace MailCore;
using namespace MailCore::Testing;

TEST(HeaderScanner, FindsEncodedWordsAsTheExpressionDoes) {
    constexpr std::string_view pieces[] = {"=", "?", "=?", "?=",     "?q?",    "?B?", "u",   "b",
                                           "Q", " ", "\n", "\u00A0", "\u0085", "é",   "?x?", "=?u?q?a?="};
    const Pattern pattern(R"(=\?([^?\s]+)\?([bBqQ])\?([^?]*)\?=)");
    RandomTexts texts(pieces);
    for (int round = 0; round < 30'000; ++round) {
        const std::string text = texts.next(15);
        std::vector<Pattern::Groups> found;
        std::size_t at = 0;
        while (const auto word = MIME::nextEncodedWord(text, at)) {
            found.push_back({std::string(word->whole), std::string(word->charset),
                             std::string(1, word->encoding), std::string(word->encoded)});
            at = static_cast<std::size_t>(word->whole.data() - text.data()) + word->whole.size();
        }
        ASSERT_EQ(found, pattern.matches(text)) << text;
    }
}

TEST(HeaderScanner, FindsParametersAsTheExpressionDoes) {
    constexpr std::string_view pieces[] = {";",  "=",  "\"", "\\",     "a",      "Z*0-_", " ",
                                           "\n", "\r", "é",  "\u2028", "\u3000", ";a=\"", ";b=c"};
    const Pattern pattern(R"re((?:^|;)\s*([a-zA-Z0-9_*-]+)\s*=\s*(?:"((?:[^"\\]|\\.)*)"|([^;\s]+)))re");
    RandomTexts texts(pieces);
    for (int round = 0; round < 30'000; ++round) {
        const std::string text = texts.next(13);
        std::vector<Pattern::Groups> found;
        std::size_t at = 0;
        while (const auto parameter = MIME::nextParameter(text, at)) {
            found.push_back({std::string(parameter->key), std::string(parameter->value)});
            at = parameter->end;
        }
        std::vector<Pattern::Groups> expected;
        for (const Pattern::Groups& groups : pattern.matches(text))
            expected.push_back({groups[1], groups[3] ? groups[3] : groups[2]});
        ASSERT_EQ(found, expected) << text;
    }
}
