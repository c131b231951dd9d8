#include "MailCore/Links/MailtoCapture.h"

#include "MailCore/Model/MailError.h"
#include "tests/Support/Case.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace std::string_literals;

MailtoCapture expected(std::string to, std::string cc = "", std::string bcc = "", std::string subject = "",
                       std::string body = "") {
    MailtoCapture capture;
    capture.to = std::move(to);
    capture.cc = std::move(cc);
    capture.bcc = std::move(bcc);
    capture.subject = std::move(subject);
    capture.body = std::move(body);
    return capture;
}

TEST(MailtoCaptures, ReadWhatALinkCarries) {
    const Testing::Case<std::string, MailtoCapture> cases[] = {
        {"a scheme in capitals", "MAILTO:ann", expected("ann")},
        {"nothing", "mailto:", expected("")},
        {"an empty query", "mailto:ann?", expected("ann")},
        {"recipients in several places", "mailto:ann?to=ben&cc=cat&cc=dan&BCC=eve",
         expected("ann, ben", "cat, dan", "eve")},
        {"recipients in the query only", "mailto:?to=ben", expected("ben")},
        {"an item without a value", "mailto:ann?to&cc=&cc=cat", expected("ann, ", "cat")},
        {"the last of two subjects", "mailto:?subject=Hi%0D%0Athere&subject=Second",
         expected("", "", "", "Second")},
        {"line breaks in a subject", "mailto:?subject=Hi%0D%0A%0Athere%0A",
         expected("", "", "", "Hi there ")},
        {"line breaks in recipients", "mailto:ann%0Aben", expected("ann ben")},
        {"line breaks in the body", "mailto:a?body=one%0Atwo%0D%0A",
         expected("a", "", "", "", "one\ntwo\r\n")},
        {"a plus sign", "mailto:ann?subject=a+b", expected("ann", "", "", "a+b")},
        {"an escape that is none", "mailto:ann%zz?body=100%", expected("ann%zz", "", "", "", "100%")},
        {"an escape that is no UTF-8", "mailto:ann%FF?body=%C3%A9", expected("ann%FF", "", "", "", "é")},
        {"an escape split by text", "mailto:?subject=%E4%B8%ADx", expected("", "", "", "中x")},
        {"U+0000", "mailto:a%00b?sub%00ject=c%00d", expected("ab", "", "", "cd")},
        {"escaped separators", "mailto:a%3Fcc%3Db?subject=x%26cc%3Dy", expected("a?cc=b", "", "", "x&cc=y")},
        {"signs of equality in a value", "mailto:?subject=a=b?c", expected("", "", "", "a=b?c")},
        {"items that nobody knows", "mailto:a?attach=/etc/passwd&&=&from=b", expected("a")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MailtoCapture wanted = c.expected;
        wanted.original = c.given;
        EXPECT_EQ(MailtoCapture(c.given), wanted);
    }
}

TEST(MailtoCaptures, RefuseOtherAndEndlessLinks) {
    EXPECT_NO_THROW(MailtoCapture("mailto:" + std::string(131'072 - 7, 'a')));
    const std::string refused[] = {"mailto:" + std::string(131'072 - 6, 'a'),
                                   "",
                                   "mailto",
                                   "http://example.com/",
                                   " mailto:ann",
                                   "mailto:\u0301ann",
                                   "xmailto:ann"};
    for (const std::string& link : refused) {
        SCOPED_TRACE(link.substr(0, 30));
        EXPECT_THROW(MailtoCapture{link}, MailError);
    }
}

TEST(MailtoCaptures, WriteOnlyFieldsWithAValue) {
    struct Case {
        std::string_view link;
        std::string text;
    };
    const Case cases[] = {
        {"mailto:ann", "To: ann"},
        {"mailto:ann?body=Line%201%0ALine%202", "To: ann\n\nLine 1\nLine 2"},
        {"mailto:?body=x", "\n\nx"},
        {"mailto:a?subject=s&bcc=c&cc=b", "To: a\nCc: b\nBcc: c\nSubject: s"},
        {"mailto:", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.link);
        EXPECT_EQ(MailtoCapture(c.link).text(), c.text);
    }
}

} // namespace
} // namespace MailCore
