#include "MailCore/Rendering/RenderedMail.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace MailCore;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(RenderedMail, WrapsAnEmptyRendering) {
    const std::string page = RenderedMail().page(false, 1.0, std::nullopt);
    EXPECT_THAT(page, StartsWith("<!doctype html><html data-theme=\"light\" "
                                 "style=\"--paper:#FFFFFF;--mail-scale:1.0\"><head>"));
    EXPECT_THAT(page, HasSubstr("font:16.0px/1.7 "));
    EXPECT_THAT(page, EndsWith("<style id=\"mail-styles\"></style></head><body>"
                               "<div class=\"mail-content\"></div></body></html>"));
}

TEST(RenderedMail, PutsBodyAndStylesIn) {
    const RenderedMail rendered{
        .body = "<p>x</p>", .links = {{"token", "https://a.example/"}}, .stylesheet = "p{}"};
    const std::string page = rendered.page(true, 1.1, std::nullopt);
    EXPECT_THAT(page, HasSubstr("<html data-theme=\"dark\" style=\"--paper:#232426;--mail-scale:1.1\">"));
    EXPECT_THAT(page, HasSubstr("font:17.6px/1.7 ")); // 1.1 × 16 is 17.6 in doubles too
    EXPECT_THAT(page, EndsWith("<style id=\"mail-styles\">p{}</style></head><body>"
                               "<div class=\"mail-content\"><p>x</p></div></body></html>"));
    EXPECT_THAT(page, testing::Not(HasSubstr("a.example")));
}

TEST(RenderedMail, WritesThePaperColour) {
    struct Case {
        std::uint32_t color;
        std::string_view text;
    };
    for (const Case& c :
         {Case{0xFF1E1E1E, "--paper:#1E1E1E;"}, Case{0xAB, "--paper:#0000AB;"}, Case{0, "--paper:#000000;"}})
        EXPECT_THAT(RenderedMail().page(true, 1.0, c.color), HasSubstr(c.text));
}
