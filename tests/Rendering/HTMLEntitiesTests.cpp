#include "MailCore/Rendering/HTMLEntities.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(HTMLEntities, AreFoundByTheirNameAndCase) {
    EXPECT_EQ(HTMLEntities::named("AElig"), "\u00C6"); // first and last of the table
    EXPECT_EQ(HTMLEntities::named("zwnj"), "\u200C");
    EXPECT_EQ(HTMLEntities::named("Auml"), "\u00C4");
    EXPECT_EQ(HTMLEntities::named("auml"), "\u00E4");
    EXPECT_EQ(HTMLEntities::named("NotEqualTilde"), "\u2242\u0338"); // two code points
    EXPECT_EQ(HTMLEntities::named("CounterClockwiseContourIntegral"), "\u2233");
    for (const std::string_view none :
         {"", "aUML", "am", "amp;", "CounterClockwiseContourIntegrals", "\xC3\x84"})
        EXPECT_EQ(HTMLEntities::named(none), "") << none;
}
