#include "MailCore/Platform/HTMLEscape.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(HTMLEscapes, StandForFiveCharactersOnly) {
    EXPECT_EQ(SafeHTML::escape("a<b>&\"'é"), "a&lt;b&gt;&amp;&quot;&#39;é");
    EXPECT_EQ(SafeHTML::escape("&amp;"), "&amp;amp;");
    EXPECT_EQ(SafeHTML::escape(""), "");
    std::string text = "<";
    SafeHTML::appendEscaped(text, "b>");
    EXPECT_EQ(text, "<b&gt;");
    EXPECT_EQ(SafeHTML::nextEscaped("ab'c'", 3), 4U);
    EXPECT_EQ(SafeHTML::nextEscaped("ab", 1), 2U);
}
