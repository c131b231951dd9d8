#include "MailCore/Platform/LittleEndian.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

using namespace std::string_literals;

TEST(LittleEndian, PutsTheLowestByteFirst) {
    const std::string bytes = "\x01\x02\xFE\xFF\x80\0\0\x90z"s;
    EXPECT_EQ(littleEndian<std::uint8_t>(bytesOf(bytes)), 0x01);
    EXPECT_EQ(littleEndian<std::uint16_t>(bytesOf(bytes)), 0x0201);
    EXPECT_EQ(littleEndian<std::uint32_t>(bytesOf(bytes)), 0xFFFE'0201U);
    EXPECT_EQ(littleEndian<std::uint64_t>(bytesOf(bytes)), 0x9000'0080'FFFE'0201U);
}

} // namespace
} // namespace MailCore
