#include "MailCore/Dates/DateParser.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace MailCore {
namespace {

TEST(DateParser, SaysTheSameByTheDirectWayAndByTheFormatters) {
    // Pieces of real dates, whole and damaged, put together at random.
    const std::vector<std::vector<std::string>> pieces = {
        {"Mon, ", "Tue, ", "sun, ", "SAT,  ", "Wed,", "Thu ", "Monday, ", "Mo, ", "", ""},
        {"1", "01", "2", "28", "29", "30", "31", "32", "0", "001"},
        {" ", " ", "  ", "", "-"},
        {"Jan", "feb", "MAR", "Apr", "May", "June", "Jul", "Sept", "Sep", "Dec", "Foo"},
        {" ", " ", " ", "  "},
        {"2024", "1999", "2023", "1582", "1583", "0024", "99", "12024", "124", "+2024"},
        {" ", " ", " "},
        {"00:00:00", "09:15:30", "9:15:30", "23:59:59", "24:00:00", "12:60:00", "12:00:60", "09:15", "9:5",
         "123:00"},
        {" ", " ", " ", "  ", ""},
        {"+0000", "-0000", "+0800", "-0530", "+1400", "-1200",  "+1500", "+2359", "+0860", "GMT",
         "UT",    "UTC",   "Z",     "GMT+1", "EST",   "+08:00", "+8",    "+080",  "gmt",   ""},
        {"", "", "", "", " ", "x"},
    };
    std::mt19937 random(20240102);
    int direct = 0;
    for (int round = 0; round < 100'000; ++round) {
        std::string text;
        for (const auto& choices : pieces) text += choices[random() % choices.size()];
        const auto quick = DateParser::parseUsualForm(text);
        if (!quick) continue;
        ++direct;
        for (const auto wanted : {DateParser::Wanted::all, DateParser::Wanted::forDisplay}) {
            const auto slow = DateParser::parseWithFormatters(text, wanted);
            ASSERT_TRUE(slow) << text;
            ASSERT_EQ(*quick, *slow) << text;
        }
    }
    EXPECT_GT(direct, 500);
}

TEST(DateParser, TakesTheDirectWayForTheUsualForms) {
    for (const std::string_view text :
         {"Tue, 2 Jan 2024 09:15:30 +0800", "2 Jan 2024 09:15 -0530", "Tue,  2 Jan 2024 09:15:30 GMT"})
        EXPECT_TRUE(DateParser::parseUsualForm(text)) << text;
}

TEST(DateParser, TellsTheFormOfADate) {
    struct Case {
        std::string_view text;
        std::string_view pattern;      // of all forms
        std::string_view shownPattern; // of those for display
    };
    const Case cases[] = {
        {"Tue, 2 Jan 2024 09:15:30 +0800", "EEE, d MMM yyyy HH:mm:ss Z", "EEE, d MMM yyyy HH:mm:ss Z"},
        {"2 Jan 2024 09:15:30 +0800", "d MMM yyyy HH:mm:ss Z", "d MMM yyyy HH:mm:ss Z"},
        {"Tue, 2 Jan 2024 09:15 +0800", "EEE, d MMM yyyy HH:mm Z", "EEE, d MMM yyyy HH:mm Z"},
        {"2 Jan 2024 09:15 +0800", "d MMM yyyy HH:mm Z", "d MMM yyyy HH:mm Z"},
        {"2 Jan 1582 09:15 +0800", "d MMM yyyy HH:mm Z", "d MMM yyyy HH:mm Z"},
        {"Tue, 2 Jan 96 09:15:30 +0000", "EEE, d MMM yy HH:mm:ss Z", ""},
        {"2024-01-02T09:15:30.500+08:00", "yyyy-MM-dd'T'HH:mm:ss.SSSXXXXX", ""},
        {"2024-01-02T09:15:30+08:00", "yyyy-MM-dd'T'HH:mm:ssXXXXX", ""},
        {"02024-01-02T09:15:30+08:00", "", ""},
        {"2 Jan 12024 09:15 +0800", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const auto parsed = DateParser::parse(c.text);
        EXPECT_EQ(parsed ? parsed->form->pattern : "", c.pattern);
        const auto shown = DateParser::parse(c.text, DateParser::Wanted::forDisplay);
        EXPECT_EQ(shown ? shown->form->pattern : "", c.shownPattern);
    }
}

} // namespace
} // namespace MailCore
