#include "MailCore/MIME/MailEncoding.h"

#include <gtest/gtest.h>

using namespace MailCore;

namespace {

struct Case {
    std::string_view name;
    std::string_view charset;
    std::string bytes;
    std::string_view text;
};

void check(std::span<const Case> cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailEncoding::decode(bytesOf(c.bytes), c.charset), c.text);
    }
}

} // namespace

TEST(MailEncodingDecode, ReadsTheCharsetsOfTheWorldsMail) {
    const Case cases[] = {
        {"UTF-8 in upper case between blanks", " UTF-8\r\n", "caf\xC3\xA9 \xE9", "café \uFFFD"},
        {"an empty label", "", "\xC3\xA9", "é"},
        {"GB2312", "GB2312", "\xC4\xE3\xBA\xC3", "你好"},
        {"a character of GBK under GB2312", "gb2312", "\xE9\x46", "镕"},
        {"four bytes of GB18030 under GBK", "x-gbk", "\x95\x32\x82\x36", "𠀀"},
        {"Big5", "big5", "\xB1\x7A\xA6\x6E", "您好"},
        {"ISO-2022-JP", "ISO-2022-JP", "\x1B$BF|K\\\x1B(B.", "日本."},
        {"Shift_JIS", "Shift_JIS", "\x93\xFA\x96\x7B", "日本"},
        {"EUC-KR", "euc-kr", "\xC7\xD1\xB1\xDB", "한글"},
        {"KOI8-R", "KOI8-R", "\xF0\xD2\xC9\xD7\xC5\xD4", "Привет"},
        {"Windows-1252", "windows-1252", "\x93\xE9\x94", "“é”"},
        {"UTF-16", "utf-16le", std::string("a\0\x3D\xD8\0\xDE", 6), "a😀"},
    };
    check(cases);
}

TEST(MailEncodingDecode, KnowsNamesThatIconvDoesNot) {
    const Case cases[] = {
        {"Korean", "ks_c_5601-1987", "\xC7\xD1\xB1\xDB", "한글"},
        {"Japanese with a prefix", "x-sjis", "\x93\xFA\x96\x7B", "日本"},
        {"seven-bit Chinese", "hz-gb-2312", "~{Dc:C~}", "你好"},
        {"Macintosh", "x-mac-roman", "\x8E", "é"},
        {"Hebrew in logical order", "iso-8859-8-i", "\xF9\xEC\xE5\xED", "שלום"},
        {"the code page of ISO-2022-JP", "CP50220", "\x1B$BF|K\\\x1B(B", "日本"},
        {"the code page of EUC-KR", "CP51949", "\xC7\xD1\xB1\xDB", "한글"},
        {"the code page of EUC-JP", "CP51932", "\xC6\xFC\xCB\xDC", "日本"},
        {"the code page of KOI8-R", "CP20866", "\xF0\xD2\xC9\xD7\xC5\xD4", "Привет"},
        {"the code page of KOI8-U", "CP21866", "\xA4", "є"},
        {"the code page of GB18030", "CP54936", "\x95\x32\x82\x36", "𠀀"},
        {"the code page of HZ", "CP52936", "~{Dc:C~}", "你好"},
        {"the code page of UTF-7", "CP65000", "+ZeU-", "日"},
        {"the code page of Macintosh", "CP10000", "\x8E", "é"},
        {"broken in the named charset, taken as Windows-1252", "ks_c_5601-1987", "a\xC7", "aÇ"},
    };
    check(cases);
}

TEST(MailEncodingDecode, TakesUnknownLabelsForUTF8ThenForWindows1252) {
    const std::string tooLong(80, 'x');
    const Case cases[] = {
        {"valid UTF-8", "x-nobody", "caf\xC3\xA9", "café"},
        {"one byte that is not", "x-nobody", "\xE9", "é"},
        {"a byte that Windows-1252 has no character for", "x-nobody", "\xE9 \x81", "\uFFFD \uFFFD"},
        {"a language suffix", "iso-8859-1*en", "\xE9\x94", "é”"},
        {"a label of 79 bytes", std::string_view(tooLong).substr(1), "\xE9", "é"},
        {"a label of 80 bytes", tooLong, "\xE9", "\uFFFD"},
        {"a label with NUL", std::string_view("koi8-r\0x", 8), "\xE9", "\uFFFD"},
        // Names that mean something special to iconv_open: error handling, and the charset of the locale.
        {"an option", "utf-16//ignore", "\xE9\x94", "é”"},
        {"separators only", "//", "caf\xC3\xA9", "café"},
        {"marks only", "***", "\xE9", "é"},
    };
    check(cases);
}

TEST(MailEncodingDecode, GoesOnAfterBytesThatMeanNothing) {
    const std::string longText(20'000, 'a');
    const Case cases[] = {
        {"a byte skipped in ISO-2022-JP resets the shift state", "iso-2022-jp",
         "\x1B$BF|\xFF"
         "F|",
         "日\uFFFDF|"},
        {"Shift_JIS cut inside a character", "shift_jis", "\x93\xFA\x96", "日\uFFFD"},
        {"eight bits in US-ASCII", "us-ascii", "a\xE9\xE9z", "a\uFFFD\uFFFDz"},
        {"UTF-16 of an odd length", "utf-16be", std::string("\0a\0", 3), "a\uFFFD"},
    };
    check(cases);
    EXPECT_EQ(MailEncoding::decode(bytesOf(longText + '\xFF' + longText), "us-ascii"),
              longText + "\uFFFD" + longText);
}

TEST(MailEncodingCharset, NamesWindowsCodePages) {
    struct Page {
        std::optional<std::uint64_t> number;
        std::optional<std::string> label;
    };
    const Page pages[] = {
        {std::nullopt, std::nullopt},
        {0, std::nullopt},
        {936, "GB18030"},
        {950, "BIG5"},
        {1200, "utf-16le"},
        {1201, "utf-16be"},
        {20127, "US-ASCII"},
        {65001, "utf-8"},
        {28591, "ISO-8859-1"},
        {28592, "ISO-8859-2"},
        {28599, "ISO-8859-9"},
        {28600, "CP28600"},
        {28590, "CP28590"},
        {1252, "CP1252"},
        {~0ULL, "CP18446744073709551615"},
    };
    for (const Page& page : pages) EXPECT_EQ(MailEncoding::charset(page.number), page.label);
}
