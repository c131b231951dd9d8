#include "MailCore/Rendering/SeenTexts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace MailCore {
namespace {

TEST(SeenTexts, AreFoundByTheirWholeText) {
    SeenTexts<int, 8> seen;
    EXPECT_EQ(seen.find("a"), nullptr);
    EXPECT_EQ(seen.find(""), nullptr);
    seen.remember("", 1);
    EXPECT_EQ(seen.find(""), nullptr);
    std::vector<std::string> texts;
    for (int index = 0; index < 200; ++index) {
        // Alike in length, at both ends and in the middle, which is all that is hashed.
        texts.push_back("beginning" + std::string(30, 'x') + "centre" + std::string(30, 'x') + "the end");
        texts.back()[12] = static_cast<char>('A' + index % 26);
        texts.back()[13] = static_cast<char>('A' + index / 26);
    }
    for (std::size_t index = 0; index < texts.size(); ++index) {
        seen.remember(texts[index], static_cast<int>(index));
        ASSERT_NE(seen.find(texts[index]), nullptr);
        ASSERT_EQ(*seen.find(texts[index]), static_cast<int>(index));
        if (index > 0) {
            ASSERT_EQ(seen.find(texts[index - 1]), nullptr); // its place was taken
        }
    }
}

} // namespace
} // namespace MailCore
