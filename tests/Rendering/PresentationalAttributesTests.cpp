#include "MailCore/Rendering/PresentationalAttributes.h"

#include <gtest/gtest.h>

using namespace MailCore;

TEST(PresentationalAttributes, BecomeDeclarations) {
    struct ElementCase {
        std::string_view name, tag;
        Attributes attributes;
        std::string_view style;
    };
    const ElementCase cases[] = {
        {"sizes", "td", {{"width", "100"}, {"height", "50%"}}, "width:100px;height:50%"},
        {"sizes that are none", "td", {{"width", "-5"}, {"height", "5000"}}, ""},
        {"zero", "td", {{"width", "0"}}, "width:0px"},
        {"spacing of a table",
         "table",
         {{"cellspacing", "100"}},
         "border-collapse:separate;border-spacing:100px"},
        {"spacing of another", "td", {{"cellspacing", "2"}}, ""},
        {"too much spacing", "table", {{"cellspacing", "101"}}, ""},
        {"a font",
         "font",
         {{"face", "Arial,x(y)"}, {"size", "7"}, {"color", "red"}},
         "color:var(--mail-color-0);font-family:'Arial',-apple-system,sans-serif;"
         "font-size:calc(48px * var(--mail-scale))"},
        {"a font size that is none", "font", {{"size", "8"}}, ""},
        {"alignment", "td", {{"align", "Right"}, {"valign", "TOP"}}, "text-align:right;vertical-align:top"},
        {"hidden", "p", {{"hidden", ""}}, "display:none!important"},
        {"nothing kept", "p", {{"align", "x"}, {"style", "width:1px"}}, ""},
    };
    for (const ElementCase& c : cases) {
        SCOPED_TRACE(c.name);
        StyleColors colors;
        std::string style;
        PresentationalAttributes::appendStyle(style, ElementAttributes(c.attributes), c.tag, colors);
        EXPECT_EQ(style, c.style);
    }
}
