#include "MailCore/Rendering/ElementAttributes.h"

#include "MailCore/Rendering/SafeHTML.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace MailCore {
namespace {

TEST(ElementAttributes, AreThoseThatAllAttributesHave) {
    std::string many;
    for (int index = 0; index < 79; ++index) many += " x" + std::to_string(index);
    for (const std::string& tag :
         {std::string(" WIDTH=1 width=2 Style='a&amp;b' nothing=3 hidden class"),
          std::string(" value=\"\" alt=a alt=b"), many + " width=80", many + " x width=81"}) {
        SCOPED_TRACE(tag);
        const Attributes all = SafeHTML::attributes(tag);
        const ElementAttributes read(tag);
        const ElementAttributes picked(all);
        for (const auto& [name, place] :
             {std::pair("width", AttributeName::width), std::pair("style", AttributeName::style),
              std::pair("hidden", AttributeName::hidden), std::pair("class", AttributeName::className),
              std::pair("value", AttributeName::value), std::pair("alt", AttributeName::alt)}) {
            const auto found = all.find(name);
            const auto expected =
                found == all.end() ? std::nullopt : std::optional<std::string_view>(found->second);
            EXPECT_EQ(read[place], expected) << name;
            EXPECT_EQ(picked[place], expected) << name;
        }
        EXPECT_EQ(read.empty(), picked.empty());
    }
    EXPECT_FALSE(ElementAttributes(many + " x width=81")[AttributeName::width]); // only 80 are looked at
    EXPECT_TRUE(ElementAttributes(" onclick=x").empty());
}

} // namespace
} // namespace MailCore
