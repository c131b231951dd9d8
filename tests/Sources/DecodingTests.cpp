#include "MailCore/Sources/Decoding.h"

#include "MailCore/Model/MailError.h"
#include "tests/Sources/SourceSupport.h"
#include "tests/Support/OutlookBuilder.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

using namespace Testing;

TEST(Decoding, ReadsEachFormatForReadersAndSearchesAlike) {
    const std::string mime = "Subject: s\nTo: t\n\nHello";
    const std::string outlook =
        OutlookMail().subject("s").recipient("t", "t@tessel.example").plain("Hello").string();
    struct Case {
        std::string_view name;
        Bytes data;
        MessageFormat format;
        std::string_view plain; // or the error
    };
    const Case cases[] = {
        {"MIME", copyOf(bytesOf(mime)), MessageFormat::mime, "Hello"},
        {"EMLX", copyOf(bytesOf(std::to_string(mime.size()) + "\n" + mime + "<plist/>")), MessageFormat::emlx,
         "Hello"},
        {"Outlook", copyOf(bytesOf(outlook)), MessageFormat::outlook, "Hello"},
        {"MIME taken for EMLX", copyOf(bytesOf(mime)), MessageFormat::emlx, "malformed"},
        {"MIME taken for Outlook", copyOf(bytesOf(mime)), MessageFormat::outlook, "malformed"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MailMessage message;
        const std::string error = errorOf([&] { message = MailReader::decoded(c.data, c.format, never); });
        EXPECT_EQ(error == "none" ? message.plain : error, c.plain);
        MIME::SearchedTexts texts;
        EXPECT_EQ(errorOf([&] { texts = MailReader::decodedTexts(c.data, c.format, never); }), error);
        EXPECT_EQ(texts.plain, message.plain);
        EXPECT_EQ(texts.to, message.to);
    }
}

} // namespace
} // namespace MailCore
