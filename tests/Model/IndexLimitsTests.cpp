#include "MailCore/Model/IndexLimits.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(IndexBudgets, AreClamped) {
    const IndexLimits limits(-5, 1'000'000'000);
    EXPECT_EQ(limits.messages(), 0);
    EXPECT_EQ(limits.bytes(), 67'108'864);
    EXPECT_EQ(IndexLimits(1'000'000, -1), IndexLimits(200'000, 0));
}

} // namespace
} // namespace MailCore
