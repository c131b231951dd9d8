#include "MailCore/MIME/Bodies.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(Bodies, StopsAtTheLargestBody) {
    constexpr std::size_t limit = 4'194'304;
    std::string target;
    MIME::appendText("", target, "\n");
    EXPECT_EQ(target, "");
    MIME::appendText("a", target, "\n");
    MIME::appendText("", target, "\n");
    EXPECT_EQ(target, "a\n");

    std::string whole;
    MIME::appendText(std::string(limit + 1'000, 'x'), whole, "");
    EXPECT_EQ(whole.size(), limit);
    MIME::appendText("y", whole, "\n");
    EXPECT_EQ(whole.size(), limit);

    std::string separated; // room for the separator is kept even when the target is empty
    MIME::appendText(std::string(limit, 'x'), separated, "\n\n");
    EXPECT_EQ(separated.size(), limit - 2);
    MIME::appendText("y", separated, "\n\n");
    EXPECT_EQ(separated.size(), limit - 2);

    std::string cut(limit - 3, 'x');
    MIME::appendText("aé", cut, "\n");
    EXPECT_TRUE(cut.ends_with("x\na\uFFFD"));
}
