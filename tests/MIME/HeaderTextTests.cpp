#include "MailCore/MIME/HeaderText.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(HeaderText, DecodesEncodedWords) {
    struct Case {
        std::string_view name;
        std::string_view value;
        std::string_view text;
    };
    const Case cases[] = {
        {"no word", "a =? b ?= c", "a =? b ?= c"},
        {"a character split across two words", "=?utf-8?B?5Lit?= =?UTF-8?b?5paH?=", "中文"},
        {"its bytes split too", "=?utf-8?B?5A==?=\t=?utf-8?Q?=B8=AD?=", "中"},
        {"words side by side", "=?utf-8?q?a?==?utf-8?q?b?=", "ab"},
        {"words in two charsets", "=?iso-8859-1?Q?=E9?= =?koi8-r?Q?=F0?=", "éП"},
        {"text around a word", "Re: =?iso-8859-1?Q?caf=E9_au_lait?= today", "Re: café au lait today"},
        {"text between words", "=?utf-8?q?a?= x =?utf-8?q?b?=", "a x b"},
        {"blanks inside a word", "=?utf-8?q?a b?=", "a b"},
        {"an empty word between two",
         "=?utf-8?B?5A==?= =?utf-8?Q?"
         "?= =?utf-8?Q?=B8=AD?=",
         "中"},
        {"a word that is not Base64, after plain text", "a =?utf-8?B?A?= =?utf-8?q?b?=", "a =?utf-8?B?A?= b"},
        {"a word that is not Base64, after a word", "=?utf-8?q?a?= =?utf-8?B?A?= b", "a=?utf-8?B?A?= b"},
        {"foreign characters in Base64", "=?utf-8?B?5L it!?=", "中"},
        {"another letter", "=?utf-8?X?a?=", "=?utf-8?X?a?="},
        {"a space in the charset", "=?utf 8?q?a?=", "=?utf 8?q?a?="},
        {"an unknown charset", "=?x-nobody?Q?=E9?=", "é"},
        {"a language suffix", "=?utf-8*fr?Q?=C3=A9?=", "é"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MIME::headerText(c.value), c.text);
    }
}

TEST(Parameters, ReadsKeysAndValues) {
    struct Case {
        std::string_view name;
        std::string_view value;
        MIME::Parameters map;
    };
    const Case cases[] = {
        {"a value without parameters", "text/plain", {}},
        {"a token and a quoted value",
         "text/plain; CHARSET=UTF-8 ; Name = \"a; b.txt\"",
         {{"charset", "UTF-8"}, {"name", "a; b.txt"}}},
        {"a parameter at the very start", "a=b;c=d", {{"a", "b"}, {"c", "d"}}},
        {"a key given twice", "x; a=1; A=2", {{"a", "1"}}},
        {"quoted pairs, also in a token",
         R"(x; a="q\"\\\é"; b=c:\\d\)",
         {{"a", "q\"\\é"}, {"b", R"(c:\d\)"}}},
        {"an empty quoted value", "x; a=\"\"", {{"a", ""}}},
        {"a quote without an end", "x; a=\"b c; d=e", {{"a", "\"b"}, {"d", "e"}}},
        {"no value", "x; a=; b=c", {{"b", "c"}}},
        {"no semicolon before", "x a=b", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MIME::parameters(c.value), c.map);
    }
    std::string many;
    for (int index = 0; index < 300; ++index) many += ";k" + std::to_string(index) + "=v";
    EXPECT_EQ(MIME::parameters(many).size(), 256U);
    EXPECT_EQ(MIME::parameter("K255", many), "v");
    EXPECT_EQ(MIME::parameter("k256", many), std::nullopt);
}

TEST(Parameters, UndoesPercentEscapes) {
    const auto bytes = [](std::string_view text) { return std::string(charsOf(MIME::percentBytes(text))); };
    EXPECT_EQ(bytes("a%41%c3%A9%"), "aA\xC3\xA9%");
    EXPECT_EQ(bytes("%4G%4%+9%++%-1%"), "%4G%4\t%++%-1%");
    EXPECT_EQ(MIME::extendedParameter("iso-8859-1'fr'caf%E9's"), "café's");
    EXPECT_EQ(MIME::extendedParameter("''caf%C3%A9"), "café");
    EXPECT_EQ(MIME::extendedParameter("it's %C3%A9"), "it's é");
}

TEST(Filename, PrefersTheDispositionAndWithinAFieldTheExtendedForms) {
    struct Case {
        std::string_view name;
        std::string disposition;
        std::string type;
        std::string_view filename;
    };
    std::string segments = "x";
    for (int index = 0; index < 70; ++index) segments += "; filename*" + std::to_string(index) + "=a";
    const std::string sixtyFour(64, 'a');
    const Case cases[] = {
        {"none", "attachment", "text/plain; charset=x", ""},
        {"plain", "attachment; filename=a.txt", "", "a.txt"},
        {"an encoded and a plain segment", "x; filename*0*=utf-8''%E4%B8%AD; filename*1=.txt", "", "中.txt"},
        {"plain segments with an encoded word", "x; filename*0=\"=?utf-8?Q?=C3\"; filename*1=\"=A9?=.txt\"",
         "", "é.txt"},
        {"a percent sign in a plain segment", "x; filename*0*=utf-8''a; filename*1=%41", "", "a%41"},
        {"segments that do not begin at 0", "x; filename*1=b; filename=a", "", "a"},
        {"a gap between segments", "x; filename*0=a; filename*2=c", "", "a"},
        {"an empty segment", "x; filename*0=\"\"; filename*1=b", "", "b"},
        {"no more than 64 segments", segments, "", sixtyFour},
        {"extended", "x; filename=plain; filename*=utf-8''na%C3%AFve.pdf", "", "naïve.pdf"},
        {"an extended name before a plain filename", "x; filename=plain; name*=utf-8''ext", "", "ext"},
        {"a filename before a name", "x; name=b; filename=a", "", "a"},
        {"an encoded word in the type", "", "image/png; name=\"=?utf-8?Q?=C3=A9.png?=\"", "é.png"},
        {"a plain disposition before an extended type", "x; filename=a.txt", "x; name*=utf-8''b.txt",
         "a.txt"},
        {"a path", "x; filename=\"../../etc/passwd\"", "", ".._.._etc_passwd"},
        {"an empty name", "x; filename=\"\"", "", "Attachment"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Header headers[] = {{"content-type", c.type}, {"CONTENT-DISPOSITION", c.disposition}};
        EXPECT_EQ(MIME::filename(headers), c.filename);
    }
}

TEST(Append, StopsAtTheLargestBody) {
    constexpr std::size_t limit = 4'194'304;
    std::string target;
    MIME::append("", target, "\n");
    EXPECT_EQ(target, "");
    MIME::append("a", target, "\n");
    MIME::append("", target, "\n");
    EXPECT_EQ(target, "a\n");

    std::string whole;
    MIME::append(std::string(limit + 1'000, 'x'), whole, "");
    EXPECT_EQ(whole.size(), limit);
    MIME::append("y", whole, "\n");
    EXPECT_EQ(whole.size(), limit);

    std::string separated; // room for the separator is kept even when the target is empty
    MIME::append(std::string(limit, 'x'), separated, "\n\n");
    EXPECT_EQ(separated.size(), limit - 2);
    MIME::append("y", separated, "\n\n");
    EXPECT_EQ(separated.size(), limit - 2);

    std::string cut(limit - 3, 'x');
    MIME::append("aé", cut, "\n");
    EXPECT_TRUE(cut.ends_with("x\na\uFFFD"));
}
