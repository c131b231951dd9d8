#include "MailCore/Sources/MailReader.h"

#include "MailCore/Platform/Text.h"
#include "tests/Sources/SourceSupport.h"
#include "tests/Support/OutlookBuilder.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>

namespace MailCore {
namespace {

using namespace Testing;

OutlookMail minutes() {
    return OutlookMail()
        .subject("Minutes =?utf-8?Q?of_May?=")
        .from("Ana", "ana@tessel.example")
        .submitted(133'486'317'300'000'000)
        .recipient("Bo", "bo@tessel.example")
        .recipient("Cy", "cy@tessel.example", 2)
        .recipient("Di", "di@tessel.example", 3)
        .plain("Hello")
        .file("a.txt", "text/plain", "abc");
}

TEST(OutlookSources, GiveOneEntryThatSaysWhatTheMessageSays) {
    const TemporaryFolder folder;
    const std::string bytes = minutes().string();
    for (const auto& [name, kind] :
         {std::pair("Minutes.msg", "MSG"), {"Minutes.OFT", "OFT"}, {"会议.Msg", "MSG"}}) {
        SCOPED_TRACE(name);
        const URL url = folder.write(name, bytes);
        const MailCollection collection = collectionOf(url);
        EXPECT_EQ(collection.kind, kind);
        EXPECT_EQ(collection.url, url);
        EXPECT_TRUE(MailReader::isCurrent(collection));
        ASSERT_EQ(collection.entries.size(), 1U);
        const MessageEntry& entry = *collection.entries.front();
        const MessageEntry expected{.subject = "Minutes of May", // encoded words count, as in a header
                                    .from = "Ana <ana@tessel.example>",
                                    .date = "2 Jan 2024 01:15:30 +0000",
                                    .length = static_cast<std::int64_t>(bytes.size()),
                                    .file = url,
                                    .revision = entry.revision,
                                    .recipients = entry.recipients,
                                    .timestamp = 1'704'158'130.0};
        EXPECT_EQ(entry, expected);
        EXPECT_TRUE(entry.recipients.view().starts_with("Bo <bo@tessel.example> Cy <cy@tessel.example>"));
        EXPECT_EQ(entry.recipients.view().find("Di"), std::string_view::npos);
        const MailMessage message = MailReader::message(entry, never);
        EXPECT_EQ(message.subject, "Minutes =?utf-8?Q?of_May?=");
        EXPECT_EQ(message.plain, "Hello");
        EXPECT_EQ(message.attachments.at(0).name, "a.txt");
    }
}

TEST(OutlookSources, AreGivenBackWhole) {
    const TemporaryFolder folder;
    const std::string bytes = minutes().container().sectorSize(4'096).file().data + "after the last sector";
    const MailCollection collection = collectionOf(folder.write("Minutes.msg", bytes));
    const MessageEntry& entry = *collection.entries.at(0);
    EXPECT_EQ(charsOf(MailReader::original(entry)), bytes);
    MailReader::exportOriginal(entry, folder.url("Copy.msg"), never, 1'000);
    EXPECT_EQ(folder.read("Copy.msg"), bytes);
    EXPECT_EQ(errorOf([&] { MailReader::exportOriginal(entry, entry.file, never, 1'000); }),
              "unsafeDestination");
}

TEST(OutlookSources, AreRefusedWhenTheyAreNone) {
    const TemporaryFolder folder;
    const std::string message = minutes().string();
    struct Case {
        std::string_view name;
        std::string_view file;
        std::string content;
        std::string_view error;
    };
    const Case cases[] = {
        {"a letter", "a.msg", "From: a@b\nSubject: s\n\nHello\n", "malformed"},
        {"a container of something else", "a.oft", Container().stream("Workbook", "1").file().data,
         "malformed"},
        {"a message with another name", "a.eml", message, "malformed"},
        {"a message with no name for it", "a.doc", message, "unsupported"},
        {"a message", "a.msg", message, "none"},
    };
    for (const Case& c : cases) {
        const URL url = folder.write(c.file, c.content);
        EXPECT_EQ(errorOf([&] { collectionOf(url); }), c.error) << c.name;
    }
}

TEST(OutlookSources, AreListedByNameWhenTheyAreTooLarge) {
    const TemporaryFolder folder;
    const URL url = folder.write("Large one.msg", minutes().string());
    std::filesystem::resize_file(folder.path("Large one.msg"), 40 * 1'048'576);
    const MailCollection collection = collectionOf(url);
    const MessageEntry& entry = *collection.entries.at(0);
    const MessageEntry expected{.subject = "Large one.msg",
                                .length = 40 * 1'048'576,
                                .file = url,
                                .revision = entry.revision,
                                .recipients = entry.recipients};
    EXPECT_EQ(entry, expected);
    EXPECT_EQ(Text::trimmed(entry.recipients.view()), "");
    EXPECT_EQ(errorOf([&] { MailReader::message(entry, never); }), "tooLarge");
    // Up to the limit the file is read, whatever stands after the last sector that is used.
    std::filesystem::resize_file(folder.path("Large one.msg"), Limits::message);
    EXPECT_EQ(collectionOf(url).entries.at(0)->from.view(), "Ana <ana@tessel.example>");
}

} // namespace
} // namespace MailCore
