#include "MailCore/Rendering/MailStyles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace MailCore;
using testing::ElementsAre;

namespace {

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (; count > 0; --count) result += text;
    return result;
}

MailStyles stylesOf(std::string_view css) {
    MailStyles styles;
    styles.addStylesheet(css, 0);
    return styles;
}

struct Case {
    std::string_view name;
    std::string given;
    std::optional<std::string> kept;
};

} // namespace

TEST(MailStyles, KeepsAndScopesRules) {
    struct RuleCase {
        std::string_view name;
        std::string css;
        std::vector<std::string> rules;
    };
    const RuleCase cases[] = {
        {"a type", "p{color:#000}", {".mail-content p{color:var(--mail-color-0)}"}},
        {"the body", "body{background:#fff}", {".mail-content{background-color:var(--mail-color-0)}"}},
        {"classes and ids",
         ".Header #top a{font-size:12px}",
         {".mail-content .m-Header #m-top a{font-size:calc(12px * var(--mail-scale))}"}},
        {"selectors that are not kept",
         "a:hover,p,div[title],b{width:1px}",
         {".mail-content p,.mail-content b{width:1px}"}},
        {"none kept", "a:hover{color:red}div[title]{}", {}},
        {"no declaration kept", "p{position:fixed}", {}},
        {"the first sixteen selectors",
         repeated("a:x,", 15) + "p,b{width:1px}",
         {".mail-content p{width:1px}"}},
        {"comments", "/*x{*/p/*y*/{/*}*/width:1px}/*", {".mail-content p{width:1px}"}},
        {"a comment put together by removal", "//**/* p{}*/ b{width:1px}", {}},
        {"braces that are never closed", "p{width:1px}b{width:2px", {".mail-content p{width:1px}"}},
        {"braces inside", "p{b{width:1px}width:2px}i{width:3px}", {".mail-content i{width:3px}"}},
        {"a narrow window",
         "@media screen and (max-width: 600px){.x{width:100%}}",
         {"@media screen and (max-width: 600px){.mail-content .m-x{width:100%}}"}},
        {"several rules for it",
         "@media only screen\nand (min-width:1px){p{width:1px}b{width:2px}}i{width:3px}",
         {"@media only screen\nand (min-width:1px){.mail-content p{width:1px}.mail-content b{width:2px}}",
          ".mail-content i{width:3px}"}},
        {"nothing kept for it", "@media (max-width:600px){a:x{width:1px}}", {}},
        {"other media", "@media print{p{width:1px}}@MEDIA (max-width:1px){p{width:1px}}", {}},
        {"widths that are none",
         "@media (max-width:12345px){p{width:1px}}@media(max-width:1px){p{width:1px}}",
         {}},
        {"other rules",
         "@import url(x);p{width:1px}@font-face{font-family:x}@keyframes a{from{width:1px}}",
         {}},
        {"four deep",
         "@media (max-width:1px){@media (max-width:2px){@media (max-width:3px){p{width:1px}}}}",
         {"@media (max-width:1px){@media (max-width:2px){@media (max-width:3px){.mail-content "
          "p{width:1px}}}}"}},
        {"five deep",
         "@media (max-width:1px){@media (max-width:2px){@media (max-width:3px){@media "
         "(max-width:4px){p{width:1px}}}}}",
         {}},
        {"too long", std::string(131'072, ' ') + "p{width:1px}", {}},
    };
    for (const RuleCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(stylesOf(c.css).rules(), c.rules);
    }
}

TEST(MailStyles, LimitsRulesOfAllSheets) {
    MailStyles many;
    for (int sheet = 0; sheet < 3; ++sheet) many.addStylesheet(repeated("p{width:1px}", 300), 0);
    EXPECT_EQ(many.rules().size(), 512U);

    MailStyles large;
    const std::string families = repeated("'" + std::string(70, 'x') + "',", 6);
    const std::string block = repeated("font-family:" + families + "x;", 30);
    for (int sheet = 0; sheet < 30; ++sheet) large.addStylesheet("p{" + block + "}", 0);
    std::size_t bytes = 0;
    for (const std::string& rule : large.rules()) bytes += rule.size();
    EXPECT_LE(bytes, 131'072U);
    EXPECT_GT(bytes + large.rules().front().size(), 131'072U);
    large.addStylesheet("p{width:1px}", 0);
    EXPECT_EQ(large.rules().back(), ".mail-content p{width:1px}"); // a small one still fits
}

TEST(MailStyles, ScopesSelectors) {
    const Case cases[] = {
        {"html", "html", ".mail-content"},
        {"body", " body\n", ".mail-content"},
        {"both", "html body", ".mail-content"},
        {"far apart", "html   body p", ".mail-content p"},
        {"body with a class", "body.a > p", ".mail-content.m-a > p"},
        {"a name that begins so", "bodywork", ".mail-content bodywork"},
        {"a word boundary", "body-x", ".mail-content-x"},
        {"html without body", "html p", ".mail-content html p"},
        {"a combinator first", "> p", ".mail-content > p"},
        {"the scope's own name", ".mail-content p", ".mail-content .m-mail-content p"},
        {"names only", "..a.1.b#", ".mail-content ..m-a.1.m-b#"},
        {"empty", " ", std::nullopt},
        {"the longest", std::string(300, 'a'), ".mail-content " + std::string(300, 'a')},
        {"too long", std::string(301, 'a'), std::nullopt},
        {"escapes", "\\70", std::nullopt},
        {"closing the element", "</style>", std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailStyles::selector(c.given), c.kept);
    }
}

TEST(MailStyles, KeepsDeclarations) {
    const Case cases[] = {
        {"several", " COLOR : Red ; width:1px;;x;y: ", "color:var(--mail-color-0);width:1px"},
        {"important", "color:red !important;width:1px!IMPORTANT",
         "color:var(--mail-color-0)!important;width:1px!important"},
        {"an escape", "color:red;wi\\64th:1px", ""},
        {"a comment", "color:red;/*x*/", ""},
        {"markup", "color:red;width:<", ""},
        {"too long", "width:1px;" + std::string(16'384, ' '), ""},
        {"the first hundred", repeated(" ;", 99) + "width:1px;height:1px", "width:1px"},
        {"a value that is too long", "font-family:" + std::string(513, 'x') + ";width:1px", "width:1px"},
        {"names that are none", "margin-a{b:1px;margin-\u00E9:1px;--x:1px;1:2", ""},
        {"functions and addresses", "width:calc(1px);background:url(https://a.example);width:expression(1)",
         ""},
        {"a shorthand keeps its colour only", "background:blue", "background-color:var(--mail-color-0)"},
        {"hidden by another program", "mso-hide:all;mso-hide:none", "display:none"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailStyles().declarations(c.given), c.kept);
    }
}

TEST(MailStyles, ChecksEachProperty) {
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
        {"line-height", "0.4", std::nullopt},
        {"line-height", "5.1", std::nullopt},
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
        EXPECT_EQ(MailStyles().declaration(c.name, c.value), c.kept);
    }
}

TEST(MailStyles, GivesColoursForBothThemes) {
    struct ColorCase {
        std::string_view value;
        bool background;
        std::optional<MailStyles::Color> color;
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
        MailStyles styles;
        const auto name = styles.color(c.value, c.background);
        ASSERT_EQ(name.has_value(), c.color.has_value());
        if (!c.color) continue;
        EXPECT_EQ(name, "var(--mail-color-0)");
        EXPECT_THAT(styles.colors(), ElementsAre(*c.color));
    }
    MailStyles styles;
    EXPECT_EQ(styles.color("CurrentColor", false), "currentcolor");
    EXPECT_EQ(styles.color("red", false), "var(--mail-color-0)");
    EXPECT_EQ(styles.color("#ff0000", false), "var(--mail-color-0)");
    EXPECT_EQ(styles.color("red", true), "var(--mail-color-1)");
    EXPECT_EQ(styles.stylesheet(), ":root{--mail-color-0:rgba(255,0,0,1.0);--mail-color-1:rgba(255,0,0,1.0)}"
                                   ":root[data-theme=dark]{--mail-color-0:rgba(247,145,145,1.0);"
                                   "--mail-color-1:rgba(255,0,0,1.0)}");
    EXPECT_EQ(MailStyles().stylesheet(), ":root{}:root[data-theme=dark]{}");
}

TEST(MailStyles, FallsBackToThePageWhenColoursRunOut) {
    MailStyles styles;
    for (int index = 0; index < 1'024; ++index)
        styles.color("rgb(" + std::to_string(index % 256) + "," + std::to_string(index / 256) + ",0)", false);
    EXPECT_EQ(styles.color("rgb(9,9,9)", false), "var(--ink)");
    EXPECT_EQ(styles.color("rgb(9,9,9)", true), "var(--paper)");
    EXPECT_EQ(styles.color("rgb(255,3,0)", false), "var(--mail-color-1023)");
}

TEST(MailStyles, TurnsPresentationIntoDeclarations) {
    struct ElementCase {
        std::string_view name, tag;
        Attributes attributes;
        std::string_view style;
    };
    const ElementCase cases[] = {
        {"style comes last",
         "td",
         {{"bgcolor", "#ffffff"}, {"style", "color:#333"}},
         "background-color:var(--mail-color-0);color:var(--mail-color-1)"},
        {"sizes", "td", {{"width", "100"}, {"height", "50%"}}, "width:100px;height:50%"},
        {"sizes that are none", "td", {{"width", "-5"}, {"height", "5000"}}, ""},
        {"zero", "td", {{"width", "0"}}, "width:0px"},
        {"spacing of a table",
         "table",
         {{"cellspacing", "2"}},
         "border-collapse:separate;border-spacing:2px"},
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
        {"nothing kept", "p", {{"align", "x"}, {"style", "x"}}, ""},
    };
    for (const ElementCase& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailStyles().inlineStyle(c.attributes, c.tag), c.style);
    }
}

TEST(MailStyles, LimitsLengths) {
    const Case cases[] = {
        {"as many digits as one likes", "0." + std::string(400, '0') + "1px",
         "0." + std::string(400, '0') + "1px"},
        {"more than fits", std::string(400, '9') + "px", std::nullopt},
        {"just too long", "4096.01px", std::nullopt},
        {"minus zero", "-0px", "-0px"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailStyles::length(c.given, false), c.kept);
    }
    EXPECT_EQ(MailStyles::length("-100px", true), "-100px");
    EXPECT_EQ(MailStyles::length("-100.1px", true), std::nullopt);
}
