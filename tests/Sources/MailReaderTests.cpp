#include "MailCore/Sources/MailReader.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/OutlookBuilder.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <sys/stat.h>

namespace MailCore {
namespace {

using namespace Testing;

const std::string letter = "From: a@b\nSubject: Letter\nDate: Tue, 2 Jan 2024 09:15:30 +0800\n\nHello\n";

TEST(Opening, DecidesByExtension) {
    const TemporaryFolder folder;
    struct Case {
        std::string_view name;
        std::string_view content;
        std::string_view result; // kind or error
    };
    const Case cases[] = {
        {"Letter.EML", letter, "EML"},
        {"letter.mime", letter, "MIME"},
        {"archive.mbo", letter, "MBOX"},
        {"note.txt", letter, "unsupported"},
        {"letter", letter, "unsupported"},
        {".eml", letter, "unsupported"},
        {"empty.eml", "", "malformed"},
        {"blank.eml", "\nSubject: s\n\n", "malformed"},
        {"text.eml", "just text\n", "malformed"},
        {"good.emlx", "11\nSubject: ab<plist>", "EMLX"},
        {"cr.emlx", "11\r\nSubject: ab", "malformed"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const URL url = folder.write(c.name, c.content);
        std::string kind;
        const std::string error = errorOf([&] { kind = collectionOf(url).kind; });
        EXPECT_EQ(kind.empty() ? error : kind, c.result);
    }
}

TEST(Opening, RefusesWhatIsNoLocalRegularFile) {
    const TemporaryFolder folder;
    folder.write("a.eml", letter);
    ASSERT_EQ(::mkfifo(folder.path("pipe.eml").c_str(), 0600), 0);
    std::filesystem::create_symlink("nowhere", folder.path("dangling.eml"));
    const std::string path = folder.path("a.eml").string();
    const URL refused[] = {
        folder.url("absent.eml"),
        folder.url("pipe.eml"),
        folder.url("dangling.eml"),
        URL::parse("file://elsewhere" + path).value(),
        URL(),
    };
    for (const URL& url : refused) EXPECT_EQ(errorOf([&] { collectionOf(url); }), "malformed") << url.text();
    EXPECT_EQ(collectionOf(URL::parse("file://localhost" + path).value()).entries.size(), 1U);
}

TEST(Opening, ReadsOddNamesAndLinks) {
    const TemporaryFolder folder;
    for (const std::string_view name : {"a b%20#?.eml", "中文\n.eml", "\xFF\xFE.eml"}) {
        const URL url = folder.write(name, letter);
        EXPECT_EQ(MailReader::message(*collectionOf(url).entries.at(0), never).subject, "Letter") << name;
    }
    folder.write("real.eml", letter);
    std::filesystem::create_symlink("real.eml", folder.path("link.eml"));
    EXPECT_EQ(collectionOf(folder.url("link.eml")).entries.size(), 1U);
}

TEST(Opening, IndexesAFileThatIsTooLargeToRead) {
    const TemporaryFolder folder;
    const URL url = folder.write("large.eml", letter);
    std::filesystem::resize_file(folder.path("large.eml"), Limits::message + 1);
    const MailCollection collection = collectionOf(url);
    EXPECT_EQ(collection.entries.at(0)->length, Limits::message + 1);
    EXPECT_EQ(errorOf([&] { MailReader::message(*collection.entries.at(0), never); }), "tooLarge");
    std::filesystem::resize_file(folder.path("large.eml"), Limits::message);
    EXPECT_EQ(errorOf([&] { MailReader::message(*collectionOf(url).entries.at(0), never); }), "none");
}

TEST(Opening, GivesAnEmptyCollectionWhenNothingFits) {
    const TemporaryFolder folder;
    const MailCollection collection = collectionOf(folder.write("a.eml", letter), {0, 0});
    EXPECT_TRUE(collection.entries.empty());
    EXPECT_TRUE(collection.indexLimitReached);
}

TEST(Opening, NoticesCancellationAndChangesAtAnyTime) {
    const std::string outlook = OutlookMail().subject("Letter").string();
    struct Case {
        std::string_view opened;
        std::string_view file;
        std::string content;
        int questions; // whether to stop: at the start, before each line and chunk, at the end of many
    };
    const Case cases[] = {
        {"a.eml", "a.eml", letter, 6},
        {"a.emlx", "a.emlx", std::to_string(letter.size()) + "\n" + letter, 6},
        {"a.msg", "a.msg", outlook, 2},
        {"a.mbox", "a.mbox", "From -\n" + letter, 10},
        {"box", "box/cur/1", letter, 8},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.opened);
        const TemporaryFolder folder;
        folder.write(c.file, c.content);
        const auto opening = [&](const Cancelled& cancelled) {
            return errorOf([&] {
                MailReader::collection(
                    folder.url(c.opened), cancelled, [](std::size_t) {}, {10, Limits::indexBytes},
                    [](std::span<const SharedEntry>) {});
            });
        };
        int asked = 0;
        EXPECT_EQ(opening([&] { return ++asked, false; }), "none");
        EXPECT_EQ(asked, c.questions);
        for (int stop = 1; stop <= c.questions; ++stop) {
            asked = 0;
            EXPECT_EQ(opening([&] { return ++asked == stop; }), "cancelled") << stop;
        }
        EXPECT_EQ(opening([&] { return folder.touch(c.file), false; }), "sourceChanged");
    }
}

TEST(Folders, MayHoldAnArchiveOrNothing) {
    const TemporaryFolder folder;
    EXPECT_EQ(errorOf([&] { collectionOf(folder.url()); }), "unsupported");
    folder.write("cur/.hidden", letter);
    EXPECT_EQ(errorOf([&] { collectionOf(folder.url()); }), "unsupported");
    folder.write("mbox", letter);
    const MailCollection collection = collectionOf(folder.url());
    EXPECT_EQ(collection.kind, "MBOX");
    EXPECT_EQ(collection.url, folder.url());
    EXPECT_EQ(collection.entries.at(0)->file, folder.url("mbox"));
    std::filesystem::remove(folder.path("mbox"));
    std::filesystem::create_directory(folder.path("mbox"));
    EXPECT_EQ(errorOf([&] { collectionOf(folder.url()); }), "malformed");
}

TEST(Staleness, IsSeenInTheFileOfTheFirstEntry) {
    const TemporaryFolder folder;
    const MailCollection current = collectionOf(folder.write("a.eml", letter));
    EXPECT_TRUE(MailReader::isCurrent(current));
    for (bool MailCollection::*flag : {&MailCollection::isIndexing, &MailCollection::indexInterrupted,
                                       &MailCollection::indexLimitReached}) {
        MailCollection partial = current;
        partial.*flag = true;
        EXPECT_FALSE(MailReader::isCurrent(partial));
    }
    folder.touch("a.eml");
    EXPECT_FALSE(MailReader::isCurrent(current));
    std::filesystem::remove(folder.path("a.eml"));
    EXPECT_FALSE(MailReader::isCurrent(current));
    EXPECT_FALSE(MailReader::isCurrent(MailCollection{.kind = "EML"}));
    folder.write("dir/cur/1", letter);
    EXPECT_FALSE(MailReader::isCurrent(collectionOf(folder.url("dir"))));
}

} // namespace
} // namespace MailCore
