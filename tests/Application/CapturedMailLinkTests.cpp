#include "TesselMail/Model/CapturedMailLink.h"

#include <gtest/gtest.h>

namespace TesselMail {
namespace {

using Field = CapturedMailLink::Field;

TEST(CapturedMailLinks, ShowWhatEachKindOfLinkCarries) {
    struct Case {
        std::string_view link;
        bool chinese;
        CapturedMailLink panel;
    };
    const Case cases[] = {
        {"mailto:ann", false, {"Email link", "envelope", {{0, "To", "ann"}}, "Copy address", "ann"}},
        {"mailto:ann?subject=Hi",
         false,
         {"Email link",
          "envelope",
          {{0, "To", "ann"}, {3, "Subject", "Hi"}},
          "Copy message",
          "To: ann\nSubject: Hi"}},
        {"mailto:?bcc=b&cc=c&body=x",
         true,
         {"邮件链接",
          "envelope",
          {{1, "抄送", "c"}, {2, "密送", "b"}, {4, "正文", "x"}},
          "复制邮件内容",
          "Cc: c\nBcc: b\n\nx"}},
        {"tel:12%2034", false, {"Telephone", "phone", {{0, "Number", "12 34"}}, "Copy number", "12 34"}},
        {"TEL:+1?x=y", true, {"电话号码", "phone", {{0, "号码", "+1"}}, "复制号码", "+1"}},
        {"sms:12345", false, {"Text message", "message", {{0, "To", "12345"}}, "Copy number", "12345"}},
        {"sms:12345?x=1&BODY=hello%21&body=no",
         false,
         {"Text message",
          "message",
          {{0, "To", "12345"}, {1, "Message", "hello!"}},
          "Copy message",
          "To: 12345\n\nhello!"}},
        {"sms:12345?body=", true, {"短信", "message", {{0, "收件人", "12345"}}, "复制号码", "12345"}},
        {"https://example.com/a?b=c",
         false,
         {"Link",
          "link",
          {{0, "URL", "https://example.com/a?b=c"}},
          "Copy link",
          "https://example.com/a?b=c"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.link);
        EXPECT_EQ(CapturedMailLink::of(c.link, c.chinese), c.panel);
    }
    for (const std::string_view refused :
         {"javascript:alert(1)", "file:///etc/passwd", "https://ann@example.com/", "", "mailto"}) {
        SCOPED_TRACE(refused);
        EXPECT_EQ(CapturedMailLink::of(refused, false), std::nullopt);
    }
}

TEST(CapturedMailLinks, TakeAsMuchHeightAsTheirValuesNeed) {
    struct Case {
        std::string_view name;
        std::vector<std::size_t> lengths;
        std::string character;
        int height;
    };
    const Case cases[] = {
        {"no field", {}, "a", 48},
        {"an empty value", {0}, "a", 48},
        {"one line to its end", {40}, "a", 52},
        {"two lines", {41}, "a", 72},
        {"three lines", {100}, "a", 92},
        {"no more than eight lines", {100'000}, "a", 192},
        {"the sum has its limit", {400, 400}, "a", 220},
        {"characters as people count them", {40}, "👨‍👩‍👧", 52},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CapturedMailLink link;
        for (const std::size_t length : c.lengths) {
            Field& field = link.fields.emplace_back();
            for (std::size_t at = 0; at < length; ++at) field.value += c.character;
        }
        EXPECT_EQ(link.height(), c.height);
    }
}

} // namespace
} // namespace TesselMail
