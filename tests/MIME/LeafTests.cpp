#include "MailCore/MIME/Leaf.h"

#include "MailCore/Model/MailError.h"
#include "tests/Support/MailBuilder.h"

#include <gtest/gtest.h>

using namespace MailCore;
using MailCore::Testing::Mail;

namespace {

MailMessage added(const Mail& part, MIME::Wanted wanted) {
    const Bytes bytes = part.bytes();
    const MIME::Split halves = MIME::split(bytes);
    MailMessage message;
    MIME::addLeaf(MIME::describe(halves.headers), halves.body, message, wanted);
    return message;
}

} // namespace

TEST(Leaf, IsAnAttachmentUnlessItIsATextToBeRead) {
    struct Case {
        std::string_view name;
        Mail part;
        std::string_view filename;
        std::string_view type;
        std::string_view content;
        bool available = true;
    };
    const Case cases[] = {
        {"a file", Mail().file("a.pdf", "Application/PDF", "%PDF"), "a.pdf", "application/pdf", "%PDF"},
        {"an image without a name", Mail().type("image/jpeg").base64("\xFF\xD8"), "Image.jpg", "image/jpeg",
         "\xFF\xD8"},
        {"a type not in the table", Mail().type("application/octet-stream").body("x"), "Attachment",
         "application/octet-stream", "x"},
        {"a text sent as a file", Mail().disposition("attachment").text("x"), "Attachment.txt", "text/plain",
         "x"},
        {"a message", Mail().type("message/rfc822").body("Subject: inner\r\n\r\nx"), "Attached message.eml",
         "message/rfc822", "Subject: inner\r\n\r\nx"},
        {"broken Base64", Mail().type("image/png").header("Content-Transfer-Encoding", "BASE64").body("QUJ"),
         "Image.png", "image/png", "", false},
        {"a parameter where the type should be", Mail().type("; charset=utf-8").body("x"), "Attachment",
         "charset=utf-8", "x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MailMessage message = added(c.part, MIME::Wanted::everything);
        EXPECT_EQ(added(c.part, MIME::Wanted::texts), MailMessage());
        ASSERT_EQ(message.attachments.size(), 1U);
        const MailAttachment& attachment = message.attachments[0];
        EXPECT_EQ(attachment.name, c.filename);
        EXPECT_EQ(attachment.type, c.type);
        EXPECT_EQ(charsOf(attachment.bytes), c.content);
        EXPECT_EQ(attachment.available, c.available);
        EXPECT_EQ(message.plain + message.html, "");
    }
}

TEST(Leaf, NeedsItsBase64WholeToBeRead) {
    const Mail broken = Mail().header("Content-Transfer-Encoding", "base64").text("QUJ");
    EXPECT_THROW(added(broken, MIME::Wanted::everything), MailError);
    EXPECT_THROW(added(broken, MIME::Wanted::texts), MailError);
}
