#include "MailCore/Rendering/ReadableText.h"

#include "MailCore/Rendering/SafeHTML.h"

#include "tests/Support/Case.h"
#include "tests/Support/Repeated.h"

#include <gtest/gtest.h>

using namespace MailCore;
using Testing::repeated;

namespace {

std::string readable(std::string html) {
    return SafeHTML::readableText(SafeHTML::render({.html = std::move(html)}).body);
}

TEST(ReadableText, KeepsTheShapeOfAMessage) {
    const MailCore::Testing::Case<std::string, std::string_view> cases[] = {
        {"nothing", "<p> </p><div></div>", ""},
        {"paragraphs", "<p>One\n two</p>\n<p>Three</p>", "One two\n\nThree"},
        {"line breaks", "One<br>two<br><br>three", "One\ntwo\n\nthree"},
        {"a break at the end of a block", "<div>One<br></div><div>two</div>", "One\ntwo"},
        {"blocks", "<div><div>One</div></div><div>two</div>three", "One\ntwo\nthree"},
        {"runs", "O<b>n</b>e <i> two</i>", "One two"},
        {"headings", "Start<h1>Title</h1>Text", "Start\n\nTitle\n\nText"},
        {"items", "Buy:<ul><li>milk<li>\n<p>tea</p></li><li></li></ul>now", "Buy:\n\n• milk\n• tea\n\nnow"},
        {"counted items", "<ol start=9><li>a</li><li>b</li></ol>", "9. a\n10. b"},
        {"items in items", "<ul><li>a<ol><li>b</li></ol></li><li>c</li></ul>", "• a\n  1. b\n• c"},
        {"cells", "<table><tr><td>a</td> <td></td><td>b</td></tr><tr><th>c</th></tr></table>d", "a\tb\nc\nd"},
        {"preformatted", "<pre>a\n  b\n\nc</pre>d", "a\n  b\n\nc\n\nd"},
        {"quotes", "a<blockquote>b<p>c</p><blockquote>d</blockquote></blockquote>e",
         "a\n\n> b\n>\n> c\n\n>> d\n\ne"},
        {"quotes deeper than marks", repeated("<blockquote>", 9) + "x", ">>>>>>>> x"},
        {"references", "a &lt;b&gt; &amp;amp; &copy; &#20013;", "a <b> &amp; © 中"},
        {"a picture that is not shown", "<p>Our <img alt='logo' src='https://tessel.example/x'> here</p>",
         "Our logo here"},
        {"what is hidden", "<div style='display:none'>no<p style='color:red'>no</p></div><p>yes</p>", "yes"},
        {"no scripts or styles", "<style>p{}</style><script>no</script><p>yes</p>", "yes"},
        {"a rule", "a<hr>b", "a\n\nb"},
        {"links by their text", "<a href='https://tessel.example/'>there</a>", "there"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(readable(c.given), c.expected);
    }
}

TEST(ReadableText, GivesPlainMessagesAsTheyAre) {
    const std::string plain = "Dear Ann,\n\n  <indented> & more\nBye";
    EXPECT_EQ(SafeHTML::readableText(SafeHTML::render({.plain = plain}).body), plain);
}

TEST(ReadableText, TakesTheLargestBodies) {
    std::string deep;
    for (int depth = 0; depth < 15'000; ++depth) deep += "<blockquote><ul><li>";
    EXPECT_NE(readable(deep + "end").find("end"), std::string::npos);
    std::string wide = "<table><tr>";
    for (int cell = 0; cell < 49'000; ++cell) wide += "<td>x";
    EXPECT_EQ(readable(wide).find("x\tx"), 0U);
    EXPECT_EQ(readable(std::string(4'000'000, 'x')).size(), 4'000'000U);
    EXPECT_EQ(readable("a" + std::string(4'000'000, ' ') + "b"), "a b");
}

} // namespace
