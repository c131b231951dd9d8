#include "MailCore/Rendering/StyleSelectors.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(StyleSelectors, AreScoped) {
    const MailCore::Testing::Case<std::string, std::optional<std::string>> cases[] = {
        {"html", "html", ".mail-content"},
        {"body", " body\n", ".mail-content"},
        {"both", "html body", ".mail-content"},
        {"far apart", "html   body p", ".mail-content p"},
        {"body with a class", "body.a > p", ".mail-content.m-a > p"},
        {"a name that begins so", "bodywork", ".mail-content bodywork"},
        {"a word boundary", "body-x", ".mail-content-x"},
        {"html without body", "html p", ".mail-content html p"},
        {"a combinator first", "> p", ".mail-content > p"},
        {"the scope's own name", ".mail-content p", ".mail-content .m-mail-content p"},
        {"names only", "..a.1.b#", ".mail-content ..m-a.1.m-b#"},
        {"empty", " ", std::nullopt},
        {"the longest", std::string(300, 'a'), ".mail-content " + std::string(300, 'a')},
        {"too long", std::string(301, 'a'), std::nullopt},
        {"escapes", "\\70", std::nullopt},
        {"closing the element", "</style>", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(StyleSelectors::scoped(c.given), c.expected);
    }
}
