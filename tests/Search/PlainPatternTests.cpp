#include "MailCore/Search/PlainPattern.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace MailCore {
namespace {

using Answer = PlainPattern::Answer;

std::vector<std::size_t> places(const PlainPattern& pattern, std::string_view text) {
    std::vector<std::size_t> found;
    EXPECT_EQ(pattern.find(text,
                           [&found](std::size_t place) {
                               found.push_back(place);
                               return false;
                           }),
              Answer::no);
    return found;
}

TEST(PlainPatterns, AreFoundWhereverTheyStand) {
    std::mt19937 random(7);
    for (int round = 0; round < 2'000; ++round) {
        std::string bytes;
        std::string text;
        for (std::size_t count = 1 + random() % 4; count > 0; --count)
            bytes += static_cast<char>('a' + random() % 2);
        for (std::size_t count = random() % 200; count > 0; --count)
            text += static_cast<char>('a' + random() % 3);
        std::vector<std::size_t> expected;
        for (std::size_t at = text.find(bytes); at != std::string::npos; at = text.find(bytes, at + 1))
            expected.push_back(at);
        ASSERT_EQ(places(PlainPattern(bytes), text), expected) << bytes << " in " << text;
    }
}

TEST(PlainPatterns, TakeBytesInTwoForms) {
    const PlainPattern pattern("ab1", std::string("\x20\0\0", 3));
    EXPECT_EQ(places(pattern, "ab1 Ab1 aB1 AB1 ab1"), (std::vector<std::size_t>{0, 4, 16}));
    EXPECT_EQ(pattern.size(), 3U);
}

TEST(PlainPatterns, StopAtThePlaceThatIsAccepted) {
    const PlainPattern pattern("ab");
    std::size_t last = 0;
    EXPECT_EQ(pattern.find("ab ab ab", [&last](std::size_t place) { return (last = place) == 3; }),
              Answer::yes);
    EXPECT_EQ(last, 3U);
    EXPECT_EQ(pattern.find("a", [](std::size_t) { return true; }), Answer::no);
}

TEST(PlainPatterns, GiveUpWhenLookingCostsTooMuch) {
    const std::string bytes = std::string(500, 'a') + 'b';
    EXPECT_EQ(PlainPattern(bytes + 'a').find(std::string(100'000, 'a'), [](std::size_t) { return false; }),
              Answer::no)
        << "the rarest byte does not stand anywhere";
    EXPECT_EQ(PlainPattern(std::string(500, 'a'))
                  .find(std::string(100'000, 'a'), [](std::size_t) { return false; }),
              Answer::unknown);
}

} // namespace
} // namespace MailCore
