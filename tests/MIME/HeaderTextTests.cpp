#include "MailCore/MIME/HeaderText.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(HeaderText, DecodesEncodedWords) {
    const MailCore::Testing::Case<std::string_view, std::string_view> cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MIME::headerText(c.given), c.expected);
    }
}

TEST(HeaderText, IsFoundByItsNameInAnyCase) {
    const std::vector<Header> headers{{"TO", "first"}, {"To", "second"}};
    EXPECT_EQ(MIME::headerValue("to", headers), "first");
    EXPECT_EQ(MIME::headerValue("Cc", headers), "");
}
