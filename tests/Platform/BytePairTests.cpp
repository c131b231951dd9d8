#include "MailCore/Platform/BytePair.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace MailCore {
namespace {

std::vector<std::size_t> places(const BytePair& pair, std::string_view text, std::size_t end) {
    std::vector<std::size_t> found;
    EXPECT_FALSE(pair.any(text, end, [&found](std::size_t place) {
        found.push_back(place);
        return false;
    }));
    return found;
}

TEST(BytePairs, AreFoundAtEveryPlaceAndInNoOther) {
    const BytePair pair({0, 'a', 0x20}, {2, '-', 0});
    for (std::size_t size = 3; size < 200; ++size) {
        std::string text(size, '.');
        for (std::size_t at = 0; at + 2 < size; ++at) {
            text[at] = at % 2 == 0 ? 'a' : 'A'; // either case
            text[at + 2] = '-';
            ASSERT_EQ(places(pair, text, size - 2), std::vector<std::size_t>{at}) << size;
            text[at] = text[at + 2] = '.';
        }
    }
}

TEST(BytePairs, AreFoundInOrderUntilOneIsAccepted) {
    const BytePair pair({0, 'a', 0}, {1, 'a', 0});
    const std::string text(100, 'a');
    EXPECT_EQ(places(pair, text, 99).size(), 99U);
    std::size_t last = 0;
    EXPECT_TRUE(pair.any(text, 99, [&last](std::size_t place) { return (last = place) == 70; }));
    EXPECT_EQ(last, 70U);
    EXPECT_TRUE(places(pair, text, 0).empty());
}

} // namespace
} // namespace MailCore
