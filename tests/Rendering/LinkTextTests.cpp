#include "MailCore/Rendering/LinkText.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

TEST(LinkText, TellsWhenItNamesAnotherHostThanTheAddress) {
    struct Case {
        const char* visible;
        const char* address;
        bool elsewhere;
    };
    const Case cases[] = {
        {"https://bank.example/login", "https://thief.example/bank.example", true},
        {"https://bank.example/login", "https://bank.example/other", false},
        {"https://BANK.example:8080", "http://www.bank.example.", false},
        {"bank.com", "https://bank.com.thief.example/", true},
        {"bank.com", "https://login.bank.com/", false},
        {"login.bank.com", "https://bank.com/", false},
        {"bank.com", "https://mybank.com/", true},
        {"Visit www.bank.example, please.", "https://thief.example/", true},
        {"(bank.de)", "https://thief.example/", true},
        {"bank.com.", "https://bank.com/", false},
        {"Sign in", "https://thief.example/", false},
        {"README.md and notes.txt, v1.2.3, e.g. this", "https://files.example/", false},
        {"Node.js", "https://nodejs.org/", false}, // no country has that code
        {"bank.xx", "https://thief.example/", false},
        {"bank.ad", "https://thief.example/", true},
        {"bank.zw", "https://thief.example/", true},
        {"www.readme.md", "https://files.example/", true},
        {"https://bank.example@thief.example/", "https://thief.example/", false}, // it says so
        {"https://user@bank.example/", "https://thief.example/", true},
        {"bank.com or other.org", "https://other.org/", false},
        {"info@bank.com", "https://thief.example/", false}, // names a person
        {"www.bank.com", "mailto:info@bank.com", false},
        {"www.bank.com", "mailto:info@thief.example?subject=bank.com", true},
        {"www.bank.com", "tel:+49123", true},
        {"bücher.de", "https://xn--bcher-kva.de/", false},
        {"bank。com", "https://bank.com/", false},
        {"请访问 bank.com", "https://thief.example/", true},
        {"bank\xF0\x9F\x98\x80.com", "https://bank.com/", true},
        {"", "https://thief.example/", false},
        {"://", "https://thief.example/", false},
        {"..com", "https://thief.example/", false},
    };
    for (const Case& test : cases)
        EXPECT_EQ(leadsElsewhere(test.visible, test.address), test.elsewhere)
            << test.visible << " " << test.address;
}

TEST(LinkText, LooksAtNoMoreThanItMust) {
    EXPECT_FALSE(leadsElsewhere(std::string(2'048, ' ') + "bank.com", "https://thief.example/"));
    EXPECT_FALSE(leadsElsewhere(std::string(300, 'a') + ".com", "https://thief.example/"));
}

} // namespace
} // namespace MailCore
