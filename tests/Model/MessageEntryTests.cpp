#include "MailCore/Model/MessageEntry.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(Entries, AreChargedForTheirTexts) {
    const MessageEntry empty;
    EXPECT_EQ(empty.metadataBytes(), static_cast<std::int64_t>(sizeof(MessageEntry)) + 160);
    const MessageEntry full{.subject = "é", .from = "abc", .date = "d", .recipients = "中"};
    EXPECT_EQ(full.metadataBytes(), empty.metadataBytes() + 2 + 3 + 1 + 3);
}

} // namespace
} // namespace MailCore
