#include "MailCore/Rendering/ShortestNumber.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(ShortestNumbers, ReadBackAsTheSameNumber) {
    struct Case {
        double number;
        std::string_view text;
    };
    const Case cases[] = {
        {0, "0.0"},
        {-0.0, "-0.0"},
        {1, "1.0"},
        {0.5, "0.5"},
        {1.25, "1.25"},
        {0.1 + 0.2, "0.30000000000000004"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {123456789, "123456789.0"},
        {1e15, "1000000000000000.0"},
        {1e16, "1e+16"},
        {-2, "-2.0"},
    };
    for (const Case& c : cases) {
        std::string text = "=";
        appendShortest(text, c.number);
        EXPECT_EQ(text.substr(1), c.text);
        EXPECT_EQ(std::stod(text.substr(1)), c.number);
    }
}

} // namespace
} // namespace MailCore
