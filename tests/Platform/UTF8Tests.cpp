#include "MailCore/Platform/UTF8.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace std::string_literals;

TEST(UTF8Repair, PutsOneReplacementForEachMaximalInvalidSequence) {
    const Testing::Case<std::string, std::string> cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Text::repaired(bytesOf(c.given)), c.expected);
        EXPECT_EQ(Text::isValid(bytesOf(c.given)), c.given == c.expected);
    }
}

TEST(UTF8CodePoints, AreWrittenAndReadBack) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; codePoint += codePoint < 0x11000 ? 1 : 0xFF) {
        if (codePoint == 0xD800) codePoint = 0xE000;
        const std::string text = Text::textOf(codePoint) + "\u0301";
        ASSERT_TRUE(Text::isValid(bytesOf(text))) << std::hex << unsigned{codePoint};
        std::size_t at = 0;
        ASSERT_EQ(Text::next(text, at), codePoint);
        ASSERT_EQ(at, text.size() - 2);
        for (std::size_t inside = 0; inside < at; ++inside) {
            ASSERT_EQ(Text::codePointStart(text, inside), 0U);
            ASSERT_EQ(Text::codePointEnd(text, inside), inside == 0 ? 0 : at);
        }
    }
}

TEST(UTF8CodePoints, AreIncompleteAtACutEnd) {
    for (const std::string_view cut : {"\xC3", "\xE4\xB8", "\xF0\x9F\x98"}) {
        std::size_t at = 0;
        EXPECT_EQ(Text::next(cut, at), U'\uFFFD');
        EXPECT_EQ(at, cut.size());
    }
}

} // namespace
} // namespace MailCore
