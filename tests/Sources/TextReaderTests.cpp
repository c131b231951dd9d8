#include "MailCore/Sources/TextReader.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/MailBuilder.h"
#include "tests/Support/TemporaryFolder.h"

#include <algorithm>
#include <string>

namespace MailCore {
namespace {

using namespace Testing;

/// An archive with messages of all sizes: some are read ahead, some are larger than what is.
std::string archive() {
    std::string result;
    for (std::size_t index = 0; index < 60; ++index) {
        const std::string number = std::to_string(index);
        const std::size_t size = index % 10 == 9 ? 150'000 : index * 400;
        result += "From a@tessel.example Mon Jan  1 00:00:00 2024\n";
        result +=
            Mail().to("to" + number).cc("cc" + number).text(number + std::string(size, 'x')).string() + "\n";
    }
    return result;
}

TEST(TextReaders, GiveTheTextsOfMessagesInAnyOrder) {
    const TemporaryFolder folder;
    EntryList entries = collectionOf(folder.write("a.mbox", archive())).entries;
    ASSERT_EQ(entries.size(), 60U);
    for (int order = 0; order < 3; ++order) {
        MailReader::TextReader reader(never);
        for (const SharedEntry& entry : entries) {
            const MailMessage message = MailReader::message(*entry, never);
            const MIME::SearchedTexts texts = reader.texts(*entry);
            ASSERT_EQ(texts.to, message.to);
            ASSERT_EQ(texts.cc, message.cc);
            ASSERT_EQ(texts.plain, message.plain) << entry->id;
        }
        reader.confirm();
        std::ranges::rotate(entries, entries.begin() + 17);
        std::ranges::reverse(entries);
    }
}

TEST(TextReaders, FailAsReadingDoes) {
    const TemporaryFolder folder;
    const EntryList entries = collectionOf(folder.write("a.mbox", archive())).entries;
    MailReader::TextReader reader(never);
    reader.texts(*entries[0]);
    MessageEntry behind = *entries.back();
    behind.length += 1;
    EXPECT_EQ(errorOf([&] { reader.texts(behind); }), "malformed");
    EXPECT_EQ(errorOf([&] { reader.texts(*entries[1]); }), "none"); // goes on after a failure
    folder.touch("a.mbox");
    EXPECT_EQ(errorOf([&] { reader.texts(*entries[2]); }), "sourceChanged");
    const Cancelled always = [] { return true; };
    MailReader::TextReader cancelled(always);
    EXPECT_EQ(errorOf([&] { cancelled.texts(*collectionOf(folder.url("a.mbox")).entries[0]); }), "cancelled");
}

} // namespace
} // namespace MailCore
