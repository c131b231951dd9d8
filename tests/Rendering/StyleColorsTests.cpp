#include "MailCore/Rendering/StyleColors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

using namespace MailCore;
using testing::ElementsAre;

namespace {

std::optional<std::string> propertyOf(StyleColors& colors, std::string_view value, bool background) {
    std::string text;
    if (!colors.append(text, value, background)) return std::nullopt;
    return text;
}

} // namespace

TEST(StyleColors, GivesColoursForBothThemes) {
    struct ColorCase {
        std::string_view value;
        bool background;
        std::optional<StyleColors::Color> color;
    };
    const ColorCase cases[] = {
        {"#000", false, {{"rgba(0,0,0,1.0)", "rgba(145,145,145,1.0)"}}},
        {"#fff", true, {{"rgba(255,255,255,1.0)", "rgba(55,55,55,1.0)"}}},
        {"#fff", false, {{"rgba(255,255,255,1.0)", "rgba(255,255,255,1.0)"}}},
        {"#000", true, {{"rgba(0,0,0,1.0)", "rgba(0,0,0,1.0)"}}},
        {"RED", false, {{"rgba(255,0,0,1.0)", "rgba(247,145,145,1.0)"}}},
        {"#FfffFF80",
         false,
         {{"rgba(255,255,255,0.5019607843137255)", "rgba(255,255,255,0.5019607843137255)"}}},
        {"#fff8", false, {{"rgba(255,255,255,0.5333333333333333)", "rgba(255,255,255,0.5333333333333333)"}}},
        {"rgb(100%,0%,0%)", true, {{"rgba(255,0,0,1.0)", "rgba(255,0,0,1.0)"}}},
        {"rgba( 18 ,52,86, 0.5)", true, {{"rgba(18,52,86,0.5)", "rgba(18,52,86,0.5)"}}},
        {"rgba(300,0,0,7)", true, {{"rgba(255,0,0,1.0)", "rgba(255,0,0,1.0)"}}},
        {"rgb(1.5,2.4,.5,.0001)", true, {{"rgba(2,2,1,0.0001)", "rgba(2,2,1,0.0001)"}}},
        {"rgb(1,,2,3)", true, {{"rgba(1,2,3,1.0)", "rgba(1,2,3,1.0)"}}},
        {"rgba(0,0,0,50%)", false, std::nullopt},
        {"rgb(1 2 3)", false, std::nullopt},
        {"rgb(1,2)", false, std::nullopt},
        {"rgb(1,2,3,4,5)", false, std::nullopt},
        {"rgb(1.2.3,2,3)", false, std::nullopt},
        {"rgb(-1,2,3)", false, std::nullopt},
        {"rgb(1, ,2,3)", false, std::nullopt},
        {"#12345", false, std::nullopt},
        {"#12 456", false, std::nullopt},
        {"ffffff", false, std::nullopt},
        {"orange", false, std::nullopt},
        {"", false, std::nullopt},
    };
    for (const ColorCase& c : cases) {
        SCOPED_TRACE(c.value);
        StyleColors colors;
        const auto name = propertyOf(colors, c.value, c.background);
        ASSERT_EQ(name.has_value(), c.color.has_value());
        if (!c.color) continue;
        EXPECT_EQ(name, "var(--mail-color-0)");
        EXPECT_THAT(colors.all(), ElementsAre(*c.color));
    }
    StyleColors colors;
    EXPECT_EQ(propertyOf(colors, "CurrentColor", false), "currentcolor");
    EXPECT_EQ(propertyOf(colors, "red", false), "var(--mail-color-0)");
    EXPECT_EQ(propertyOf(colors, "#ff0000", false), "var(--mail-color-0)");
    EXPECT_EQ(propertyOf(colors, "red", true), "var(--mail-color-1)");
    EXPECT_EQ(colors.stylesheet(), ":root{--mail-color-0:rgba(255,0,0,1.0);--mail-color-1:rgba(255,0,0,1.0)}"
                                   ":root[data-theme=dark]{--mail-color-0:rgba(247,145,145,1.0);"
                                   "--mail-color-1:rgba(255,0,0,1.0)}");
    EXPECT_EQ(StyleColors().stylesheet(), ":root{}:root[data-theme=dark]{}");
}

TEST(StyleColors, FallsBackToThePageWhenColoursRunOut) {
    StyleColors colors;
    for (int index = 0; index < 1'024; ++index)
        propertyOf(colors, "rgb(" + std::to_string(index % 256) + "," + std::to_string(index / 256) + ",0)",
                   false);
    EXPECT_EQ(propertyOf(colors, "rgb(9,9,9)", false), "var(--ink)");
    EXPECT_EQ(propertyOf(colors, "rgb(9,9,9)", true), "var(--paper)");
    EXPECT_EQ(propertyOf(colors, "rgb(255,3,0)", false), "var(--mail-color-1023)");
}
