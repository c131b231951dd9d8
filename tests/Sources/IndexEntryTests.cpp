#include "MailCore/Sources/IndexEntry.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

TEST(IndexEntries, DecodeAndCutTheFieldsOfAMessage) {
    const std::string large(3'000, 'x');
    const Header fields[] = {{"subject", "=?utf-8?Q?caf=C3=A9?="},
                             {"SUBJECT", "the second does not count"},
                             {"From", large},
                             {"Date", "Tue, 2 Jan 2024 09:15:30 +0800 (" + large + ")"},
                             {"Cc", "=?utf-8?Q?=C3=A9?= <e@tessel.example>"},
                             {"Bcc", large}};
    const URL file = URL::file("/a.mbox");
    const FileRevision revision{.inode = 3, .size = 50};
    const MessageEntry entry = MailReader::indexEntry(7, fields, {10, 40}, file, revision);
    EXPECT_EQ(entry.id, 7);
    EXPECT_EQ(entry.subject.view(), "café");
    EXPECT_EQ(entry.from.size(), 1'024U);
    EXPECT_EQ(entry.date.size(), 256U);
    EXPECT_EQ(entry.timestamp, 1704158130); // of all of the value
    EXPECT_TRUE(entry.recipients.view().starts_with(" é <e@tessel.example> xxx"));
    EXPECT_EQ(entry.recipients.size(), 2'049U); // 2,048 characters
    EXPECT_EQ(entry.offset, 10U);
    EXPECT_EQ(entry.length, 40);
    EXPECT_EQ(entry.file, file);
    EXPECT_EQ(entry.revision, revision);
}

TEST(IndexEntries, AreMadeOfNothing) {
    const MessageEntry entry = MailReader::indexEntry(0, {}, {0, 0}, URL(), {});
    EXPECT_EQ(entry.subject.view(), "");
    EXPECT_EQ(entry.recipients.view(), "  ");
    EXPECT_EQ(entry.timestamp, std::nullopt);
}

} // namespace
} // namespace MailCore
