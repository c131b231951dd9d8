#include "MailCore/Model/MailMessage.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <string_view>

namespace MailCore {
namespace {

TEST(Attachments, KnowWhichCanBeReadAsMessages) {
    const Testing::Case<MailAttachment, bool> cases[] = {
        {"by type", {.name = "x", .type = "Message/RFC822"}, true},
        {"by name", {.name = "Message.EML", .type = "application/octet-stream"}, true},
        {"an Outlook template", {.name = "x.oft", .type = ""}, true},
        {"with a message inside", {.name = "x", .type = "", .embedded = {MailMessage{}}}, true},
        {"an OLE object, whatever its type",
         {.name = "x.eml", .type = "message/rfc822", .isOLE = true},
         false},
        {"something else", {.name = "eml", .type = "image/png"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.given.canPreview(), c.expected);
    }
}

TEST(Messages, SummariseTheirText) {
    EXPECT_EQ(MailMessage{.plain = " a\r\n\r\nb\u00A0\u2003c "}.summary(), "a b c");
    EXPECT_EQ(MailMessage{.plain = "\n \t"}.summary(), "");
}

} // namespace
} // namespace MailCore
