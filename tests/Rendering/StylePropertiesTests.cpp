#include "MailCore/Rendering/StyleProperties.h"

#include <gtest/gtest.h>

#include <optional>

using namespace MailCore;

TEST(StyleProperties, KeepOnlyWhatTheyMaySay) {
    struct PropertyCase {
        std::string_view name, value;
        std::optional<std::string_view> kept;
    };
    const PropertyCase cases[] = {
        {"text-align", "CENTER", "center"},
        {"text-align", "match-parent", std::nullopt},
        {"display", "bloc\u212A", "block"}, // the Kelvin sign is a k in lower case
        {"display", "grid", std::nullopt},
        {"text-decoration", "underline line-through", "underline line-through"},
        {"font-weight", "450", std::nullopt},
        {"position", "fixed", std::nullopt},
        {"content", "'x'", std::nullopt},
        {"font-family", "\"Segoe UI\", 'Arial' ,sans-serif",
         "'Segoe UI','Arial','sans-serif',-apple-system,sans-serif"},
        {"font-family", "url(x),\u5B8B\u4F53", "'\u5B8B\u4F53',-apple-system,sans-serif"},
        {"font-family", "a;b,'", std::nullopt},
        {"font-size", "x-large", "x-large"},
        {"font-size", "12pt", "calc(12pt * var(--mail-scale))"},
        {"font-size", "1.2em", "1.2em"},
        {"font-size", "inherit", "inherit"},
        {"font-size", "auto", std::nullopt},
        {"line-height", "1.5", "1.5"},
        {"line-height", "0.5", "0.5"},
        {"line-height", "0.49", std::nullopt},
        {"line-height", "5", "5"},
        {"line-height", "5.01", std::nullopt},
        {"line-height", "normal", "normal"},
        {"line-height", "20px", "20px"},
        {"width", "100%", "100%"},
        {"width", "4096px", "4096px"},
        {"width", "5000px", std::nullopt},
        {"width", "-1px", std::nullopt},
        {"width", ".5em", ".5em"},
        {"width", "5.em", std::nullopt},
        {"width", "5", std::nullopt},
        {"width", "5vw", std::nullopt},
        {"text-indent", "-20px", "-20px"},
        {"text-indent", "-101px", std::nullopt},
        {"letter-spacing", "-1px", std::nullopt},
        {"margin", "-20px  0", "-20px 0"},
        {"margin", "-200px", std::nullopt},
        {"margin-left", "auto", "auto"},
        {"margin", "1px 2px 3px 4px 5px", std::nullopt},
        {"padding", "1px\t2px", "1px 2px"},
        {"padding", "-1px", std::nullopt},
        {"padding-top", "", std::nullopt},
        {"border-width", "1px 2px", "1px 2px"},
        {"border-style", "solid none", "solid none"},
        {"border-style", "inset", std::nullopt},
        {"border", "none", "0"},
        {"border", "1px solid #ccc", "1px solid var(--mail-color-0)"},
        {"border-top", "0 solid", "0 solid"},
        {"border", "auto solid", std::nullopt},
        {"border", "1px solid red x", std::nullopt},
        {"border-left", "1px inset red", std::nullopt},
        {"border-radius", "4px", "4px"},
        {"border-radius", "4px 4px", std::nullopt},
        {"mso-hide", "all", "display:none"},
    };
    for (const PropertyCase& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + std::string(c.value));
        StyleColors colors;
        std::string text;
        EXPECT_EQ(StyleProperties::append(text, c.name, c.value, colors), c.kept.has_value());
        if (c.kept) {
            EXPECT_EQ(text, *c.kept);
        }
    }
}
