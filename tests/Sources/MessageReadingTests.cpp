#include "MailCore/Sources/MailReader.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <sys/stat.h>

namespace MailCore {
namespace {

using namespace Testing;

const std::string letter = "From: a@b\nSubject: Letter\n\nHello\n";

TEST(Reading, ProvesThatTheFileIsTheOneThatWasIndexed) {
    const TemporaryFolder folder;
    const MailCollection collection = collectionOf(folder.write("a.eml", letter));
    const MessageEntry& entry = *collection.entries.at(0);
    EXPECT_EQ(MailReader::message(entry, never).plain, "Hello\n");
    EXPECT_EQ(charsOf(MailReader::original(entry)), letter);

    MessageEntry longer = entry;
    longer.length += 1;
    EXPECT_EQ(errorOf([&] { MailReader::message(longer, never); }), "malformed");
    for (int stop = 1; stop <= 4; ++stop) { // before the chunk, twice in decoding, at the end
        int asked = 0;
        EXPECT_EQ(errorOf([&] { MailReader::message(entry, [&] { return ++asked == stop; }); }), "cancelled");
    }

    const Cancelled changing = [&] { return folder.touch("a.eml"), false; };
    EXPECT_EQ(errorOf([&] { MailReader::message(entry, changing); }), "sourceChanged") << "while it is read";
    MessageEntry unchecked = entry;
    unchecked.revision.reset();
    EXPECT_EQ(errorOf([&] { MailReader::message(unchecked, never); }), "none");
    folder.write("a.eml", "shorter");
    EXPECT_EQ(errorOf([&] { MailReader::message(entry, never); }), "sourceChanged")
        << "rather than malformed";
    std::filesystem::remove(folder.path("a.eml"));
    EXPECT_EQ(errorOf([&] { MailReader::message(entry, never); }), "malformed");
}

TEST(Reading, TakesAnArchivesMessageFromItsPlace) {
    const TemporaryFolder folder;
    const std::string envelope = "From - Tue\n";
    const URL url = folder.write("a.mbox", envelope + letter + envelope + "Subject: Two\n\n>From me\n");
    const MailCollection collection = collectionOf(url);
    const MailMessage message = MailReader::message(*collection.entries.at(1), never);
    EXPECT_EQ(message.subject, "Two");
    EXPECT_EQ(message.plain, ">From me\n"); // as stored, not unquoted
}

class Exporting : public ::testing::Test {
protected:
    MessageEntry entryOf(const URL& url) { return *collectionOf(url).entries.at(0); }
    std::string exportTo(const MessageEntry& entry, const URL& destination,
                         std::int64_t chunkSize = 131'072) {
        return errorOf([&] { MailReader::exportOriginal(entry, destination, never, chunkSize); });
    }
    TemporaryFolder folder;
};

TEST_F(Exporting, WritesTheOriginalBytes) {
    const MessageEntry entry = entryOf(folder.write("a.eml", letter));
    folder.write("out.eml", "something else that is longer than the letter itself");
    for (const std::int64_t chunk : {0, 1, 7, 1'000'000}) {
        EXPECT_EQ(exportTo(entry, folder.url("out.eml"), chunk), "none");
        EXPECT_EQ(folder.read("out.eml"), letter);
    }
    struct stat status {};
    ASSERT_EQ(::stat(folder.path("out.eml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);

    EXPECT_EQ(exportTo(entryOf(folder.write("b.emlx", "10\nSubject: xtrailer")), folder.url("b.eml")),
              "none");
    EXPECT_EQ(folder.read("b.eml"), "Subject: x");
    EXPECT_EQ(folder.count(), 4U); // no temporary file stays
}

TEST_F(Exporting, NeverTouchesTheSource) {
    const MessageEntry entry = entryOf(folder.write("a.eml", letter));
    std::filesystem::create_hard_link(folder.path("a.eml"), folder.path("hard.eml"));
    std::filesystem::create_symlink("a.eml", folder.path("soft.eml"));
    std::filesystem::create_directory(folder.path("sub"));
    for (const std::string_view name : {"a.eml", "hard.eml", "soft.eml", "sub/../a.eml"})
        EXPECT_EQ(exportTo(entry, folder.url(name)), "unsafeDestination") << name;
    EXPECT_EQ(folder.read("a.eml"), letter);
    const auto linking = [&] {
        return std::filesystem::create_hard_link(folder.path("a.eml"), folder.path("sub/late.eml")), false;
    };
    EXPECT_EQ(errorOf([&] { MailReader::exportOriginal(entry, folder.url("sub/late.eml"), linking, 1'000); }),
              "unsafeDestination");
    std::filesystem::remove(folder.path("sub/late.eml"));
    EXPECT_EQ(exportTo(entry, folder.url("absent/out.eml")), "platform");
    EXPECT_EQ(exportTo(entry, folder.url("sub")), "platform"); // a folder cannot be replaced
    EXPECT_EQ(exportTo(entry, URL::parse("https://example.org/a").value()), "malformed");
    EXPECT_EQ(folder.count(), 4U);
    EXPECT_EQ(folder.count("sub"), 0U);
}

TEST_F(Exporting, LeavesTheDestinationAloneWhenItFails) {
    const MessageEntry entry = entryOf(folder.write("a.eml", letter));
    folder.write("out.eml", "before");
    for (const std::int64_t chunk : {8, 1'000}) { // in the middle, and when all is written
        int asked = 0;
        EXPECT_EQ(errorOf([&] {
                      MailReader::exportOriginal(
                          entry, folder.url("out.eml"), [&] { return ++asked > 1; }, chunk);
                  }),
                  "cancelled");
    }
    EXPECT_EQ(errorOf([&] {
                  MailReader::exportOriginal(
                      entry, folder.url("out.eml"),
                      [&] {
                          folder.touch("a.eml");
                          return false;
                      },
                      8);
              }),
              "sourceChanged");
    EXPECT_EQ(exportTo(entry, folder.url("out.eml")), "sourceChanged");
    MessageEntry outside = entryOf(folder.url("a.eml"));
    outside.length += 1;
    EXPECT_EQ(exportTo(outside, folder.url("out.eml")), "malformed");
    outside.length = -1;
    EXPECT_EQ(exportTo(outside, folder.url("out.eml")), "malformed");
    EXPECT_EQ(folder.read("out.eml"), "before");
    EXPECT_EQ(folder.count(), 2U);
}

TEST(Destinations, MustNotTouchOpenSources) {
    const TemporaryFolder folder;
    folder.write("open.eml", letter);
    folder.write("other.eml", letter);
    folder.write("box/cur/1", letter);
    folder.write("boxes/x", "");
    std::filesystem::create_hard_link(folder.path("open.eml"), folder.path("hard.eml"));
    std::filesystem::create_directory_symlink("box", folder.path("boxlink"));
    std::filesystem::create_symlink("box/cur/absent", folder.path("dangling"));
    const URL protecting[] = {folder.url("open.eml"), folder.url("box"), folder.url("vanished"),
                              URL::parse("tessel-mail-message://1/a.eml").value()};
    struct Case {
        std::string_view destination;
        std::string_view error;
    };
    const Case cases[] = {
        {"new.eml", "none"},
        {"other.eml", "none"},
        {"boxes/x", "none"}, // a name that only begins like the folder's
        {"vanished", "none"},
        {"open.eml", "unsafeDestination"},
        {"hard.eml", "unsafeDestination"},
        {"box/new", "unsafeDestination"},
        {"boxlink/new", "unsafeDestination"},
        {"boxlink/absent/new", "unsafeDestination"},
        {"dangling", "unsafeDestination"}, // writing through it would make a file in the folder
        {"box", "unsafeDestination"},
        {"boxes", "unsafeDestination"}, // a folder
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.destination);
        EXPECT_EQ(errorOf([&] { MailReader::validateDestination(folder.url(c.destination), protecting); }),
                  c.error);
    }
    EXPECT_EQ(errorOf([&] { MailReader::validateDestination(URL(), protecting); }), "malformed");
}

} // namespace
} // namespace MailCore
