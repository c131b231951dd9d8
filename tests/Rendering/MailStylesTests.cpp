#include "MailCore/Rendering/MailStyles.h"

#include "tests/Support/Case.h"
#include "tests/Support/Repeated.h"

#include <gtest/gtest.h>

using namespace MailCore;
using Testing::repeated;

namespace {

MailStyles stylesOf(std::string_view css) {
    MailStyles styles;
    styles.addStylesheet(css, 0);
    return styles;
}

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

TEST(MailStyles, KeepsDeclarations) {
    const MailCore::Testing::Case<std::string, std::optional<std::string>> cases[] = {
        {"several", " COLOR : Red ; width:1px;;x;y: ", "color:var(--mail-color-0);width:1px"},
        {"important", "color:red !important;width:1px!IMPORTANT",
         "color:var(--mail-color-0)!important;width:1px!important"},
        {"an escape", "color:red;wi\\64th:1px", ""},
        {"a comment", "color:red;/*x*/", ""},
        {"markup", "color:red;width:<", ""},
        {"the longest", "width:1px;" + std::string(16'374, ' '), "width:1px"},
        {"too long", "width:1px;" + std::string(16'375, ' '), ""},
        {"the first hundred", repeated(" ;", 99) + "width:1px;height:1px", "width:1px"},
        {"the longest value", "margin:1px" + std::string(506, ' ') + "2px", "margin:1px 2px"},
        {"a value that is too long", "margin:1px" + std::string(507, ' ') + "2px;width:1px", "width:1px"},
        {"names that are none", "margin-a{b:1px;margin-\u00E9:1px;--x:1px;1:2", ""},
        {"functions and addresses", "width:calc(1px);background:url(https://a.example);width:expression(1)",
         ""},
        {"a shorthand keeps its colour only", "background:blue", "background-color:var(--mail-color-0)"},
        {"hidden by another program", "mso-hide:all;mso-hide:none", "display:none"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(MailStyles().declarations(c.given), c.expected);
    }
}

TEST(MailStyles, PutTheStyleOfAnElementLast) {
    const Attributes attributes{{"bgcolor", "#ffffff"}, {"style", "color:#333"}};
    EXPECT_EQ(MailStyles().inlineStyle(attributes, "td"),
              "background-color:var(--mail-color-0);color:var(--mail-color-1)");
    EXPECT_EQ(MailStyles().inlineStyle({{"align", "x"}, {"style", "x"}}, "p"), "");
}
