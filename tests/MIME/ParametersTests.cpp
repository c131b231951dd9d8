#include "MailCore/MIME/Parameters.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(Parameters, ReadsKeysAndValues) {
    const MailCore::Testing::Case<std::string_view, MIME::Parameters> cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MIME::parameters(c.given), c.expected);
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
