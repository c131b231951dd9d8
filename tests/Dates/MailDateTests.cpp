#include "MailCore/Dates/MailDate.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace std::string_literals;

std::string nested(int depth) {
    return std::string(static_cast<std::size_t>(depth), '(') +
           std::string(static_cast<std::size_t>(depth), ')');
}

TEST(MailDateTimestamps, ReadWhatStandsInDateHeaders) {
    const Testing::Case<std::string, std::optional<double>> cases[] = {
        {"the usual form with a comment", "Tue, 2 Jan 2024 09:15:30 +0800 (CST)", 1704158130},
        {"no weekday", "2 Jan 2024 09:15:30 +0800", 1704158130},
        {"no seconds", "Tue, 2 Jan 2024 09:15 -0530", 1704206700},
        {"a weekday that does not fit", "Fri, 2 Jan 2024 09:15:30 +0800", 1704158130},
        {"a two-digit year", "Tue, 2 Jan 96 09:15:30 +0000", 820574130},
        {"a two-digit year without weekday", "2 Jan 96 09:15:30 +0000", std::nullopt},
        {"a named zone", "Tue, 02 Jan 2024 01:15:30 GMT", 1704158130},
        {"ISO with fraction", "2024-01-02T09:15:30.500+08:00", 1704158130.5},
        {"ISO", "2024-01-02T09:15:30+08:00", 1704158130},
        {"digits of another script", "２ Jan 2024 09:15:30 +0800", 1704158130},
        {"two blanks where one is usual", "Tue,  2 Jan 2024  09:15:30 +0800", 1704158130},
        {"blanks around", "  Tue, 2 Jan 2024 09:15:30 +0800\n", 1704158130},
        {"any case", "TUE, 2 JAN 2024 09:15:30 +0800", 1704158130},
        {"before the epoch", "Wed, 31 Dec 1969 23:59:59 +0000", -1},
        {"a leap day", "Thu, 29 Feb 2024 00:00:00 +0000", 1709164800},
        {"no leap day", "Wed, 29 Feb 2023 00:00:00 +0000", std::nullopt},
        {"hour 24", "Tue, 2 Jan 2024 24:15:30 +0800", std::nullopt},
        {"second 60", "Tue, 2 Jan 2024 09:15:60 +0800", std::nullopt},
        {"a zone nobody defined", "Tue, 2 Jan 2024 09:15:30 EST", std::nullopt},
        {"no comma", "Tue 2 Jan 2024 09:15:30 +0800", std::nullopt},
        {"no zone", "Tue, 2 Jan 2024 09:15:30", std::nullopt},
        {"text behind", "Tue, 2 Jan 2024 09:15:30 +0800 x", std::nullopt},
        {"unbalanced parentheses", "Tue, 2 Jan 2024 09:15:30 +0800 (CST", std::nullopt},
        {"16 nested comments", "Tue, 2 Jan 2024 09:15:30 +0800 " + nested(16), 1704158130},
        {"17 nested comments", "Tue, 2 Jan 2024 09:15:30 +0800 " + nested(17), std::nullopt},
        {"4,096 bytes", "Tue, 2 Jan 2024 09:15:30 +0800" + std::string(4'066, ' '), 1704158130},
        {"4,097 bytes", "Tue, 2 Jan 2024 09:15:30 +0800" + std::string(4'067, ' '), std::nullopt},
        {"nothing", "", std::nullopt},
        {"no date", "yesterday", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailDate::timestamp(c.given), c.expected);
    }
}

TEST(MailDateDisplay, KeepsTheSendersClockAndZone) {
    struct Case {
        std::string_view name;
        std::string_view text;
        std::string_view locale;
        std::string_view shown;
    };
    const Case cases[] = {
        {"seconds are shown when given", "Tue, 2 Jan 2024 09:15:30 +0800 (CST)", "en_GB",
         "2 Jan 2024, 09:15:30 UTC+8"},
        {"a short time otherwise", "2 Jan 2024 09:15 -0530", "en_GB", "2 Jan 2024, 09:15 UTC-5:30"},
        {"Chinese conventions", "Tue, 2 Jan 2024 09:15:30 +0800", "zh_CN", "2024年1月2日 09:15:30 UTC+8"},
        {"a named zone", "Tue, 2 Jan 2024 09:15:30 GMT", "en_GB", "2 Jan 2024, 09:15:30 UTC+0"},
        {"a named zone in lower case", "Tue, 2 Jan 2024 09:15:30 ut", "en_GB", "2 Jan 2024, 09:15:30 UTC+0"},
        {"minus nothing", "Tue, 2 Jan 2024 09:15:30 -0000", "en_GB", "2 Jan 2024, 09:15:30 UTC+0"},
        {"a zone with a colon", "Tue, 2 Jan 2024 09:15:30 +05:45", "en_GB", "2 Jan 2024, 09:15:30 UTC+5:45"},
        {"runs of blanks", " Tue,\t2 Jan  2024 09:15:30 +0800", "en_GB", "2 Jan 2024, 09:15:30 UTC+8"},
        {"Gregorian years everywhere", "Tue, 2 Jan 2024 09:15:30 +0800", "th_TH@calendar=buddhist",
         "2 ม.ค. 2024 09:15:30 UTC+8"},
        {"minutes above 59", "Tue, 2 Jan 2024 09:15:30 +2460", "en_GB", "Tue, 2 Jan 2024 09:15:30 +2460"},
        {"hours above 23", "Tue, 2 Jan 2024 09:15:30 +2400", "en_GB", "Tue, 2 Jan 2024 09:15:30 +2400"},
        {"the farthest zone", "Tue, 2 Jan 2024 09:15:30 -1800", "en_GB", "2 Jan 2024, 09:15:30 UTC-18"},
        {"farther than that", "Tue, 2 Jan 2024 09:15:30 -1801", "en_GB",
         "Tue, 2 Jan 2024 09:15:30 UTC-18:01"},
        {"no blank before the zone", "2024-01-02T09:15:30+08:00", "en_GB", "2024-01-02T09:15:30+08:00"},
        {"a date nobody reads", "Someday +0100", "en_GB", "Someday UTC+1"},
        {"a zone that no place has", "Tue, 2 Jan 2024 09:15:30 +2300", "en_GB",
         "Tue, 2 Jan 2024 09:15:30 UTC+23"},
        {"a two-digit year", "Tue, 2 Jan 96 09:15:30 +0000", "en_GB", "Tue, 2 Jan 96 09:15:30 UTC+0"},
        {"a locale nobody knows", "2 Jan 2024 09:15 +0000", "aaaaaaaaaaaaaaaa",
         "Jan 2, 2024, 9:15\u202FAM UTC+0"},
        {"a locale with broken keywords", "2 Jan 2024 09:15 +0000", "en_US@=;",
         "Jan 2, 2024, 9:15\u202FAM UTC+0"},
        {"unbalanced parentheses", "2 Jan 2024 09:15 +0000 )", "en_GB", "2 Jan 2024 09:15 +0000 )"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailDate::formatted(c.text, c.locale), c.shown);
        EXPECT_EQ(MailDate::display(c.text, c.locale), c.shown);
        EXPECT_EQ(MailDate::display(c.text, c.locale), c.shown); // now from memory
    }
    const std::string tooLong = "2 Jan 2024 09:15 +0000" + std::string(4'100, ' ');
    EXPECT_EQ(MailDate::display(tooLong, "en_GB"), tooLong);
}

TEST(MailDateComments, AreRemovedWhereTheyBalance) {
    const Testing::Case<std::string, std::optional<std::string>> cases[] = {
        {"one", "a(b)c", "a c"},
        {"nested", "a(b(c)d)e", "a e"},
        {"an escaped parenthesis", R"(a(b\)c)d)", "a d"},
        {"a backslash outside", R"(a\(b)c)", R"(a\ c)"},
        {"a closing one too many", "a)b", std::nullopt},
        {"an escape at the end", R"(a(b\)", std::nullopt},
        {"a parenthesis with an accent is another character", "a(\u0301b", "a(\u0301b"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailDate::withoutComments(c.given), c.expected);
    }
}

} // namespace
} // namespace MailCore
