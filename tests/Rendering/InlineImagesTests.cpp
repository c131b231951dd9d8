#include "MailCore/Rendering/InlineImages.h"

#include "tests/Support/TestImages.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

MailAttachment image(std::string_view contentID, std::string_view bytes) {
    MailAttachment attachment;
    attachment.contentID = contentID;
    attachment.bytes = copyOf(bytesOf(bytes));
    return attachment;
}

TEST(InlineImages, AreTheFirstOfTheirNameIfTheyAreSafe) {
    const MailMessage message{.attachments = {image("a", "no image"), image("a", Testing::png(8, 8)),
                                              image("b c", Testing::gif(8, 8)),
                                              image("", Testing::jpeg(8, 8)),
                                              image("moving", Testing::gif(8, 8, 2))}};
    InlineImages images(message);
    const auto typeOf = [&images](std::string_view address) {
        const auto found = images.take(address);
        return found ? std::string(found->type) : "none";
    };
    EXPECT_EQ(typeOf("cid:a"), "none"); // the second of that name does not count
    EXPECT_EQ(typeOf("CID:b%20c"), "image/gif");
    EXPECT_EQ(typeOf("cid:b c"), "image/gif");
    EXPECT_EQ(typeOf("cid:"), "image/jpeg");
    EXPECT_EQ(typeOf("cid:moving"), "none");
    EXPECT_EQ(typeOf("cid:nobody"), "none");
    EXPECT_EQ(typeOf("http://a"), "none");
    EXPECT_EQ(typeOf(""), "none");
}

TEST(InlineImages, CountEachTimeTheyAreTaken) {
    const std::string header = Testing::png(8, 8);
    const MailMessage message{
        .attachments = {image("half", header + std::string(2'097'152 - header.size(), 'x')),
                        image("larger", header + std::string(2'097'153 - header.size(), 'x')),
                        image("small", header)}};
    InlineImages images(message);
    EXPECT_TRUE(images.take("cid:half"));
    EXPECT_FALSE(images.take("cid:nobody"));
    EXPECT_FALSE(images.take("cid:larger")); // by one byte
    EXPECT_TRUE(images.take("cid:half"));
    EXPECT_FALSE(images.take("cid:small")); // 4 MiB are full
}

} // namespace
} // namespace MailCore
