#include "MailCore/Platform/UTF16.h"

#include "MailCore/Platform/Converter.h"
#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace MailCore {
namespace {

using namespace std::string_literals;

TEST(UTF16, TakesWellFormedBytesOnly) {
    const Testing::Case<std::string, std::optional<std::string>> cases[] = {
        {"nothing", "", ""},
        {"fewer than four units of ASCII", "a\0b\0c\0"s, "abc"},
        {"ASCII around other scripts", "a\0b\0c\0d\0\xE9\0e\0f\0g\0h\0\x2D\x4E"s, "abcdéefgh中"},
        {"the edges of lengths", "\x7F\0\x80\0\xFF\x07\0\x08\xFF\xFF"s, "\x7F\u0080\u07FF\u0800\uFFFF"},
        {"a pair", "\x3D\xD8\0\xDE"s, "😀"},
        {"a mark is a character", "\xFF\xFEz\0"s, "\uFEFFz"},
        {"U+0000 stays", "a\0\0\0"s, "a\0"s},
        {"a high half at the end", "a\0\x3D\xD8"s, std::nullopt},
        {"a high half before a letter", "\x3D\xD8z\0"s, std::nullopt},
        {"a low half first", "\0\xDE\x3D\xD8"s, std::nullopt},
        {"an odd byte", "a\0b"s, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::fromUTF16LE(bytesOf(c.given)), c.expected);
    }
}

TEST(UTF16, IsRepairedAsTheConverterDoes) {
    std::mt19937 random(16);
    constexpr auto units = std::to_array<std::uint16_t>(
        {'a',    'b',    'c',    'd',    0xE9,   0x7FF,  0x800,  0x4E2D, 0xD7FF, 0xD800, 0xD83D,
         0xDBFF, 0xDC00, 0xDE00, 0xDFFF, 0xE000, 0xFEFF, 0xFFFF, 0xDCDC, 0xD8D8, 0});
    for (int round = 0; round < 20'000; ++round) {
        Bytes bytes;
        for (std::size_t count = random() % 12; count > 0; --count) {
            const std::uint16_t unit = units[random() % units.size()];
            bytes.push_back(static_cast<std::byte>(unit & 0xFF));
            if (random() % 20 != 0) bytes.push_back(static_cast<std::byte>(unit >> 8));
        }
        auto converter = Converter::open("utf-16le");
        ASSERT_TRUE(converter);
        ASSERT_EQ(Text::repairedUTF16LE(bytes), converter->convert(bytes)) << "round " << round;
    }
}

TEST(UTF16, CountsPairsAsTwoUnits) {
    EXPECT_EQ(Text::lengthInUTF16("aé中"), 3U);
    EXPECT_EQ(Text::lengthInUTF16("\uFFFF😀"), 3U);
    EXPECT_EQ(Text::lengthInUTF16(""), 0U);
}

} // namespace
} // namespace MailCore
