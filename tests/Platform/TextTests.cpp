#include "MailCore/Platform/Text.h"

#include "MailCore/Platform/Converter.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace MailCore {
namespace {

using namespace std::string_literals;

TEST(TextRepair, PutsOneReplacementForEachMaximalInvalidSequence) {
    struct Case {
        std::string_view name;
        std::string bytes;
        std::string text;
    };
    const Case cases[] = {
        {"ASCII", "plain", "plain"},
        {"well formed", "é中😀", "é中😀"},
        {"a lone continuation", "a\x80z", "a\uFFFDz"},
        {"a cut sequence of three is one", "\xE4\xB8", "\uFFFD"},
        {"a cut sequence and text", "\xE4\xB8z", "\uFFFDz"},
        {"an overlong sequence", "\xC0\xAF", "\uFFFD\uFFFD"},
        {"a surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"above U+10FFFF", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"U+0000 stays", "a\0b"s, "a\0b"s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::repaired(bytesOf(c.bytes)), c.text);
        EXPECT_EQ(Text::isValid(bytesOf(c.bytes)), c.bytes == c.text);
    }
}

TEST(TextFromUTF16, TakesWellFormedBytesOnly) {
    struct Case {
        std::string_view name;
        std::string bytes;
        std::optional<std::string> text;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::fromUTF16LE(bytesOf(c.bytes)), c.text);
    }
}

TEST(TextFromUTF16, IsRepairedAsTheConverterDoes) {
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

TEST(TextPrefix, CutsBetweenCharactersAsPeopleSeeThem) {
    const std::string family = "👨‍👩‍👧";
    const std::string longMark = "e" + [] {
        std::string marks;
        for (int index = 0; index < 20'000; ++index) marks += "\u0301";
        return marks;
    }();
    struct Case {
        std::string_view name;
        std::string text;
        std::size_t count;
        std::string prefix;
    };
    const Case cases[] = {
        {"short enough", "abc", 5, "abc"},
        {"ASCII", "abcdef", 3, "abc"},
        {"an accent after the cut stays with its letter", "abe\u0301f", 3, "abe\u0301"},
        {"an accent right behind ASCII", "abc\u0301d", 3, "abc\u0301"},
        {"CR LF is one", "a\r\nb", 2, "a\r\n"},
        {"a family is one", family + family, 1, family},
        {"one character longer than any window", longMark + "xy", 2, longMark + "x"},
        {"many characters over windows", std::string(20'000, 'x') + "中" + std::string(20'000, 'y'), 20'001,
         std::string(20'000, 'x') + "中"},
        {"nothing", "abc", 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::prefix(c.text, c.count), c.prefix);
    }
}

TEST(TextPrefix, CountsTheSameWithAndWithoutShortcuts) {
    // The first n+1 characters begin with the first n, and add exactly one; whatever stands beside ASCII
    // runs.
    const std::string pieces[] = {"a",
                                  "\r\n",
                                  "\r",
                                  "\n",
                                  "e\u0301",
                                  "中",
                                  "👨‍👩‍👧",
                                  "\u0301",
                                  "한",
                                  "\u0600",
                                  "🇩🇪",
                                  std::string(20, 'x'),
                                  std::string(17, '\r') + "\n",
                                  "ก็"};
    std::uint32_t random = 7;
    std::string text;
    for (int index = 0; index < 3'000; ++index) {
        random = random * 1'664'525 + 1'013'904'223;
        text += pieces[(random >> 16) % std::size(pieces)];
    }
    std::size_t end = 0;
    for (std::size_t count = 0; end < text.size(); ++count) {
        ASSERT_EQ(Text::prefix(text, count).size(), end) << count;
        end += Text::firstCharacter(std::string_view(text).substr(end));
    }
}

TEST(TextTrimming, TakesUnicodeWhiteSpaceOffBothEnds) {
    EXPECT_EQ(Text::trimmed("\u00A0\u3000 a b\u2028\r\n"), "a b");
    EXPECT_EQ(Text::trimmed(" \t\u3000"), "");
    EXPECT_EQ(Text::trimmed("\u200Ba\u200B"), "\u200Ba\u200B"); // invisible, but no space
    EXPECT_EQ(Text::trimmed("<<a>b>", "<>"), "a>b");
}

TEST(TextIntegers, AreWholeOrNothing) {
    EXPECT_EQ(Text::integer("12"), 12);
    EXPECT_EQ(Text::integer("+12"), 12);
    EXPECT_EQ(Text::integer("-12"), -12);
    for (const std::string_view text : {"", "+", "-", "+-1", "1 ", " 1", "1a", "0x1", "9223372036854775808"})
        EXPECT_EQ(Text::integer(text), std::nullopt) << text;
}

TEST(TextCase, LowersByUnicodeWithoutALocale) {
    EXPECT_EQ(Text::lowered("ABC"), "abc");
    EXPECT_EQ(Text::lowered("ÄΣI"), "äσi");
    EXPECT_EQ(Text::uppered("straße"), "STRASSE");
}

} // namespace
} // namespace MailCore
