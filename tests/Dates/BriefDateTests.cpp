#include "MailCore/Dates/BriefDate.h"

#include <gtest/gtest.h>

#include <limits>

namespace MailCore {
namespace {

constexpr double hour = 3'600;
constexpr double day = 24 * hour;
constexpr double now = 1'717'243'200; // 2024-06-01 12:00 UTC

TEST(BriefDate, SaysAsMuchAsIsNeeded) {
    struct Case {
        const char* locale;
        const char* zone;
        double seconds;
        const char* shown;
    };
    const Case cases[] = {
        {"en_GB", "UTC", now - 2 * hour, "10:00"},
        {"en_GB", "UTC", now - 12 * hour, "00:00"},
        {"en_GB", "UTC", now - 12 * hour - 1, "31 May"},
        {"en_GB", "UTC", now + day, "2 Jun"}, // a clock that is wrong
        {"en_GB", "UTC", now - 152 * day, "1 Jan"},
        {"en_GB", "UTC", now - 153 * day, "31 Dec 2023"},
        {"en_GB", "UTC", now + 365 * day, "1 Jun 2025"},    // the same day of another year
        {"en_GB", "Pacific/Auckland", now - hour, "1 Jun"}, // today is the second there
        {"en_GB", "America/Los_Angeles", now - 6 * hour, "31 May"},
        {"zh_CN", "UTC", now - 2 * hour, "10:00"},
        {"zh_CN", "UTC", now - day, "5月31日"},
        {"zh_CN", "UTC", now - 400 * day, "2023年4月28日"},
        {"de_DE", "UTC", now - 400 * day, "28. Apr. 2023"},
        {"th_TH", "UTC", now - 400 * day, "28 เม.ย. 2023"}, // the year of the message's own calendar
        {"no such locale", "no such zone", now - day, "May 31"},
        {"en_GB", "UTC", -day, "31 Dec 1969"},
        {"en_GB", "UTC", 1e12, ""},
        {"en_GB", "UTC", std::numeric_limits<double>::quiet_NaN(), ""},
    };
    for (const Case& test : cases)
        EXPECT_EQ(BriefDate(test.locale, test.zone).text(test.seconds, now), test.shown)
            << test.locale << " " << test.zone << " " << test.seconds;
}

} // namespace
} // namespace MailCore
