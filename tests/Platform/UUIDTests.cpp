#include "MailCore/Platform/UUID.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace MailCore {
namespace {

TEST(UUIDs, AreWrittenInTheStandardForm) {
    for (int round = 0; round < 100; ++round) {
        const UUID id = UUID::random();
        const std::string text = id.lowerText();
        ASSERT_EQ(text.size(), 36U);
        for (std::size_t at = 0; at < text.size(); ++at) {
            const bool isHyphen = at == 8 || at == 13 || at == 18 || at == 23;
            ASSERT_EQ(text[at] == '-', isHyphen) << text;
            ASSERT_TRUE(isHyphen || ASCII::isDigit(text[at]) || (text[at] >= 'a' && text[at] <= 'f')) << text;
        }
        EXPECT_EQ(text[14], '4');                                                   // version
        EXPECT_NE(std::string_view("89ab").find(text[19]), std::string_view::npos); // variant
        EXPECT_TRUE(Text::equalsIgnoringCase(id.text(), text));
        EXPECT_EQ(Text::uppered(text), id.text());
    }
}

} // namespace
} // namespace MailCore
