#include "MailCore/MIME/Entity.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <string>

using namespace MailCore;

namespace {

MIME::Split split(std::string_view entity) {
    return MIME::split(bytesOf(entity));
}
std::string bodyOf(std::string_view entity) {
    return std::string(charsOf(split(entity).body));
}

} // namespace

TEST(Entity, ReadsFieldsAsTheyStand) {
    const MailCore::Testing::Case<std::string_view, std::vector<Header>> cases[] = {
        {"order, case and duplicates", "b: 1\r\nA: 2\r\nB:3\r\n\r\n", {{"b", "1"}, {"A", "2"}, {"B", "3"}}},
        {"folded lines", "A: one\r\n\t two \r\n  three\r\n\r\n", {{"A", "one two three"}}},
        {"a folded blank line", "A: one\n \nB: 2\n\n", {{"A", "one "}, {"B", "2"}}},
        {"a continuation before any field", " x\nA: 1\n\n", {{"A", "1"}}},
        {"a continuation after a dropped line", "A: 1\nbad name: 2\n 3\n\n", {{"A", "1 3"}}},
        {"names that are none", "From x\nA B: 1\n\xC3\xA9: 2\n: 3\nno colon\nC:\n\n", {{"C", ""}}},
        {"a blank before the colon", "A : 1\n\n", {}},
        {"bytes that are not UTF-8", "A: \xE9\n\n", {{"A", "\uFFFD"}}},
        {"no blank line", "A: 1\r\nB: 2", {{"A", "1"}, {"B", "2"}}},
        {"a CR left at the end", "A: 1\r\n\n", {{"A", "1\r"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(split(c.given).headers, c.expected);
    }
}

TEST(Entity, FindsTheBodyAfterTheFirstBlankLine) {
    EXPECT_EQ(bodyOf("A: 1\r\n\r\nx\n\ny"), "x\n\ny");
    EXPECT_EQ(bodyOf("A: 1\n\nx\r\n\r\ny"), "x\r\n\r\ny");
    EXPECT_EQ(bodyOf("A: 1\r\n\nx"), "x");
    EXPECT_EQ(bodyOf("A: 1\n\r\nx"), "") << "neither CRLF CRLF nor LF LF";
    EXPECT_EQ(bodyOf("\n\nx"), "x");
    EXPECT_EQ(bodyOf("\r\nx"), "");
    EXPECT_EQ(bodyOf(""), "");
}

TEST(Entity, KeepsWithinItsLimits) {
    std::string many;
    for (int index = 0; index < 2'001; ++index) many += "A" + std::to_string(index) + ": v\n";
    many += " more\n\nbody";
    const MIME::Split fields = split(many);
    ASSERT_EQ(fields.headers.size(), 2'000U);
    EXPECT_EQ(fields.headers.back(), (Header{"A1999", "v more"}));

    const std::string longValue(300'000, 'v');
    const std::string entity = "A: " + longValue + "\nB: 2\n\nbody";
    const MIME::Split cut = split(entity); // its body points into the entity
    ASSERT_EQ(cut.headers.size(), 1U);
    EXPECT_EQ(cut.headers[0].value.size(), 262'144U - 3);
    EXPECT_EQ(charsOf(cut.body), "body");
}

TEST(Entity, KeepsForTextsWhatTellsOfThem) {
    const auto cut = MIME::cut(bytesOf("Subject: s\nTO: a\n b\nX-To: c\n d\ncontent-type: t\nCc: e\n\nx"),
                               MIME::Wanted::texts);
    const std::vector<Header> kept{{"TO", "a b"}, {"content-type", "t"}, {"Cc", "e"}};
    EXPECT_EQ(cut.halves.headers, kept);
    EXPECT_EQ(cut.fieldCount, 5U);
    EXPECT_EQ(charsOf(cut.halves.body), "x");
}
