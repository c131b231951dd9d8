#pragma once

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a scanner is compared with: the regular expression that it stands for, read by ICU.
namespace MailCore::Testing {

using Groups = std::vector<std::string>; // the whole match and its groups; "-" for one that did not take part

inline std::vector<Groups> regexMatches(const char* pattern, const std::string& text) {
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

/// Runs `check` with `count` texts made of `pieces`.
template <typename Check>
void withRandomTexts(std::span<const std::string_view> pieces, int longest, int count, Check check) {
    std::mt19937 random(2'047); // NOLINT: the same texts every time
    for (int round = 0; round < count; ++round) {
        std::string text;
        for (int left = static_cast<int>(random() % static_cast<unsigned>(longest)); left > 0; --left) {
            text += pieces[random() % pieces.size()];
        }
        check(text);
        if (::testing::Test::HasFailure()) return;
    }
}

} // namespace MailCore::Testing
