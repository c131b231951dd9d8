#include "MailCore/Platform/ASCII.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

namespace MailCore {
namespace {

TEST(ASCIITexts, EndAtTheFirstOtherByteWhereverItStands) {
    for (std::size_t size = 0; size < 150; ++size) {
        std::string text(size, 'x');
        ASSERT_TRUE(isASCII(text));
        ASSERT_EQ(asciiRun(text), size);
        for (std::size_t at = 0; at < size; ++at) {
            text[at] = '\x80';
            ASSERT_FALSE(isASCII(text)) << at << " of " << size;
            ASSERT_EQ(asciiRun(text), at);
            text[at] = 'x';
        }
    }
}

TEST(ASCIIBytes, AreWhatTheClassicLocaleSays) {
    for (int value = 0; value < 256; ++value) {
        SCOPED_TRACE(value);
        const char byte = static_cast<char>(value);
        const bool inside = value < 128;
        EXPECT_EQ(isASCII(byte), inside);
        EXPECT_EQ(ASCII::isDigit(byte), inside && std::isdigit(value) != 0);
        EXPECT_EQ(ASCII::isLetter(byte), inside && std::isalpha(value) != 0);
        EXPECT_EQ(ASCII::isAlphanumeric(byte), inside && std::isalnum(value) != 0);
        EXPECT_EQ(ASCII::isSpace(byte), inside && std::isspace(value) != 0);
        EXPECT_EQ(ASCII::isHexDigit(byte), inside && std::isxdigit(value) != 0);
        EXPECT_EQ(ASCII::lowered(byte), inside ? static_cast<char>(std::tolower(value)) : byte);
        EXPECT_EQ(ASCII::uppered(byte), inside ? static_cast<char>(std::toupper(value)) : byte);
    }
    for (int value = 0; value < 16; ++value) {
        EXPECT_EQ(ASCII::hexDigit(ASCII::hexDigits[static_cast<std::size_t>(value)]), value);
        EXPECT_EQ(ASCII::hexDigit("0123456789abcdef"[value]), value);
    }
}

} // namespace
} // namespace MailCore
