#include "MailCore/Platform/Bytes.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace MailCore {
namespace {

TEST(ByteBuffers, KeepTheirContentAsTheyGrowAndAreAligned) {
    Bytes bytes;
    for (std::size_t size = 1; size < 100'000; size = size * 3 + 1) {
        const std::size_t before = bytes.size();
        bytes.resize(size);
        for (std::size_t at = before; at < size; ++at) bytes[at] = static_cast<std::byte>(at % 251);
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(bytes.data()) % 64, 0U);
        for (std::size_t at = 0; at < size; ++at) ASSERT_EQ(bytes[at], static_cast<std::byte>(at % 251));
    }
    EXPECT_EQ(copyOf(bytes), bytes);
    EXPECT_EQ(charsOf(bytesOf("a\xFF")), "a\xFF");
}

} // namespace
} // namespace MailCore
