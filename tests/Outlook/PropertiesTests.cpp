#include "MailCore/Outlook/Properties.h"

#include "tests/Support/ContainerBuilder.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

std::string record(std::uint32_t tag, std::uint64_t value) {
    return Testing::littleEndian(tag, 4) + Testing::littleEndian(6, 4) + Testing::littleEndian(value, 8);
}

Outlook::Properties properties(const std::string& stream, std::size_t header) {
    return {copyOf(bytesOf(stream)), header};
}

TEST(Properties, HaveTheValueOfTheirLastWholeRecord) {
    const std::string records = record(1, 10) + record(2, 0x8000'0000'0000'0001) + record(1, 11);
    const auto whole = properties(std::string(24, 'x') + records, 24);
    EXPECT_EQ(whole[1], 11U);
    EXPECT_EQ(whole[2], 0x8000'0000'0000'0001U);
    EXPECT_EQ(whole[3], std::nullopt);
    const auto cut = properties(std::string(24, 'x') + records.substr(0, records.size() - 1), 24);
    EXPECT_EQ(cut[1], 10U);
    EXPECT_EQ(properties(records, 8)[2], std::nullopt); // another header shifts them all
}

TEST(Properties, AreNoneWithoutRecords) {
    EXPECT_EQ(Outlook::Properties()[0], std::nullopt);
    EXPECT_EQ(properties(std::string(32, '\0'), 32)[0], std::nullopt);
    EXPECT_EQ(properties(std::string(47, '\0'), 32)[0], std::nullopt);
    EXPECT_EQ(properties(std::string(48, '\0'), 32)[0], 0U);
}

} // namespace
} // namespace MailCore
