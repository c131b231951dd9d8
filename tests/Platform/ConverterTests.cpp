#include "MailCore/Platform/Converter.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace MailCore {
namespace {

TEST(Converters, TakeNamesAndNothingElse) {
    for (const std::string_view name : {"utf-8", "x", "iso_8859-1:1987"})
        EXPECT_TRUE(isPlainCharsetName(name)) << name;
    for (const std::string_view name : {"", "//", "utf-8//ignore", "utf-8,x", "-", "***"}) {
        EXPECT_FALSE(isPlainCharsetName(name)) << name;
        EXPECT_FALSE(Converter::open(std::string(name))) << name;
        EXPECT_FALSE(decodeRegistered(bytesOf("a"), std::string(name))) << name;
    }
    EXPECT_FALSE(Converter::open("x-nobody"));
}

TEST(Converters, BeginAnewWithEachText) {
    auto converter = Converter::open("iso-2022-jp");
    ASSERT_TRUE(converter);
    EXPECT_EQ(converter->convert(bytesOf("\x1B$BF|K\\")), "日本");
    Converter moved(std::move(*converter));
    EXPECT_EQ(moved.convert(bytesOf("\x1B(BF|")), "F|");
    // More than fits into one round, with a broken byte where rounds meet.
    auto latin = Converter::open("iso-8859-1");
    ASSERT_TRUE(latin);
    const std::string many(10'000, '\xE9');
    EXPECT_EQ(latin->convert(bytesOf(many)).size(), 20'000U);
    auto ascii = Converter::open("us-ascii");
    ASSERT_TRUE(ascii);
    for (const std::size_t at :
         {std::size_t{0}, std::size_t{8'191}, std::size_t{8'192}, std::size_t{9'999}}) {
        std::string text(10'000, 'a');
        text[at] = '\xE9';
        std::string expected(10'000, 'a');
        expected.replace(at, 1, "\uFFFD");
        EXPECT_EQ(ascii->convert(bytesOf(text)), expected) << at;
    }
}

TEST(RegisteredConverters, RefuseWhatIsInvalid) {
    EXPECT_EQ(decodeRegistered(bytesOf("\xC7\xD1"), "cp51949"), "한");
    EXPECT_EQ(decodeRegistered(bytesOf("\xC7"), "cp51949"), std::nullopt);
    EXPECT_EQ(decodeRegistered(bytesOf(""), "cp51949"), "");
    EXPECT_EQ(decodeRegistered(bytesOf("a"), "x-nobody"), std::nullopt);
    const std::string many(5'000, 'x');
    EXPECT_EQ(decodeRegistered(bytesOf(many), "macintosh"), many);
}

} // namespace
} // namespace MailCore
