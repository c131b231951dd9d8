#include "MailCore/Dates/DisplayCache.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(DisplayCache, ForgetsTheOldestWithinItsBounds) {
    DisplayCache cache;
    for (int index = 0; index < 1'025; ++index) cache.store(std::to_string(index), "x", 1);
    EXPECT_FALSE(cache.find("0"));
    EXPECT_TRUE(cache.find("1"));
    cache.store("large", "y", 1'048'000);
    EXPECT_EQ(cache.find("large"), "y");
    EXPECT_FALSE(cache.find("2"));
    EXPECT_TRUE(cache.find("1")); // used a moment ago
    cache.store("too large", "z", 1'048'577);
    EXPECT_FALSE(cache.find("too large"));
}

} // namespace
} // namespace MailCore
