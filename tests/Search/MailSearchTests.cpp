#include "MailCore/Search/MailSearch.h"

#include "tests/Search/PlainAlgorithm.h"
#include "tests/Sources/SourceSupport.h"
#include "tests/Support/Case.h"
#include "tests/Support/MailBuilder.h"
#include "tests/Support/TemporaryFolder.h"

#include "MailCore/Rendering/SafeHTML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace MailCore {
namespace {

using namespace Testing;
using CaseFolding::Rules;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::int64_t> ids(std::span<const SharedEntry> entries) {
    std::vector<std::int64_t> result;
    for (const SharedEntry& entry : entries) result.push_back(entry->id);
    return result;
}

MailSearch::Results scan(std::span<const SharedEntry> entries, std::string_view query) {
    return MailSearch::scan(entries, query, never, Rules::standard);
}

SharedEntry shared(MessageEntry entry) {
    return std::make_shared<const MessageEntry>(std::move(entry));
}

const std::string envelope = "From a@tessel.example Mon Jan  1 00:00:00 2024\n";

/// The message file `bytes` with a subject that no query here is in.
SharedEntry fileEntry(const TemporaryFolder& folder, std::string_view name, std::string_view bytes,
                      std::int64_t id) {
    const URL url = folder.write(name, bytes);
    return shared({.id = id,
                   .subject = "Minutes",
                   .length = static_cast<std::int64_t>(bytes.size()),
                   .file = url,
                   .revision = FileRevision::at(url.path())});
}

TEST(MailSearch, LooksThroughTheEntryAndThenThroughTheTexts) {
    const TemporaryFolder folder;
    const std::string bytes =
        Mail()
            .subject("Field subject")
            .from("Field sender")
            .to("=?utf-8?q?Z=C3=BCrich?= <to@tessel.example>")
            .cc("carbon@tessel.example")
            .date("Mon, 1 Jan 2024 09:15:30 +0100")
            .part(Mail().text("The plain text, in quintessence"))
            .part(Mail().html("<title>headline</title><p title=\"tip\">Mark&uuml;p <b>bold</b>er"
                              "</p><style>colour</style>"))
            .part(Mail().file("attached.txt", "text/plain", "secret text"))
            .string();
    const SharedEntry entry = shared({.subject = "Entry Subject",
                                      .from = "Entry Sender",
                                      .date = "entry date",
                                      .length = static_cast<std::int64_t>(bytes.size()),
                                      .file = folder.write("a.eml", bytes),
                                      .recipients = "entry recipient"});
    const Case<std::string_view, bool> cases[] = {
        {"subject", "ENTRY SUBJECT", true},
        {"sender", "entry sender", true},
        {"recipients", "recipient", true},
        {"date of the entry", "entry date", false},
        {"To, decoded", "ZÜRICH", true},
        {"Cc", "Carbon@", true},
        {"plain text", "quintessence", true},
        {"HTML alone", "MARKÜP", true},
        {"across a tag", "bold er", true},
        {"inside a tag", "tip", false},
        {"a style", "colour", false},
        {"an attachment", "secret", false},
        {"its name", "attached.txt", false},
        {"the subject of the message", "field subject", false},
        {"the Date field", "09:15:30", false},
        {"across two fields", "carbon@tessel.example The", false},
        {"blanks inside", "plain  text", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(scan({{entry}}, c.given).entries.size(), c.expected ? 1U : 0U);
    }
    EXPECT_THAT(ids(MailSearch::matching({{entry}}, "entry s", never, Rules::standard)), ElementsAre(0));
    EXPECT_THAT(MailSearch::matching({{entry}}, "quintessence", never, Rules::standard), IsEmpty());
}

TEST(MailSearch, CountsWhatCannotBeReadAndGoesOn) {
    const TemporaryFolder folder;
    const std::string needle = "From: a\n\nneedle";
    EntryList entries = {
        fileEntry(folder, "gone.eml", needle, 0),
        fileEntry(folder, "broken.eml", "no header", 1),
        fileEntry(folder, "broken.emlx", "x\n" + needle, 2),
        fileEntry(folder, "broken.msg", "no container", 3),
        fileEntry(folder, "bad64.eml", "Content-Transfer-Encoding: base64\n\nAAA", 4),
        shared({.id = 5, .length = Limits::message + 1, .file = folder.write("large.eml", needle)}),
        shared({.id = 6, .length = 1'000, .file = folder.write("short.eml", needle)}),
        shared({.id = 7, .offset = ~ByteOffset{0}, .length = 1, .file = folder.url("short.eml")}),
        shared({.id = 8, .length = 10, .file = folder.url()}),
        fileEntry(folder, "good.emlx", std::to_string(needle.size()) + "\n" + needle + "<plist>", 9),
        fileEntry(folder, "good.eml", needle, 10),
    };
    std::filesystem::remove(folder.path("gone.eml"));
    const MailSearch::Results results = scan(entries, "Needle");
    EXPECT_THAT(ids(results.entries), ElementsAre(9, 10));
    EXPECT_EQ(results.unreadable, 9);

    const MailSearch::Results bySubject = scan(entries, "minutes");
    EXPECT_THAT(ids(bySubject.entries), ElementsAre(0, 1, 2, 3, 4, 9, 10)) << "no file is needed for these";
    EXPECT_EQ(bySubject.unreadable, 4);
    EXPECT_EQ(scan(entries, " \r\n\u00A0"), (MailSearch::Results{.entries = entries}));
}

TEST(MailSearch, StopsAtAFileThatChanged) {
    const TemporaryFolder folder;
    folder.write("a.mbox", envelope + "Subject: x\n\none\n\n" + envelope + "Subject: y\n\ntwo\n");
    const EntryList entries = collectionOf(folder.url("a.mbox")).entries;
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_THAT(ids(scan(entries, "two").entries), ElementsAre(1));

    // Between two messages of one file, after the first has been read.
    const auto changing = [&](auto change) {
        int asked = 0;
        bool done = false;
        const Cancelled hook = [&] {
            if (++asked > 4 && !done) {
                change();
                done = true;
            }
            return false;
        };
        return errorOf([&] { MailSearch::scan(entries, "nothing", hook, Rules::standard); });
    };
    EXPECT_EQ(changing([&] { folder.touch("a.mbox"); }), "sourceChanged");
}

TEST(MailSearch, NoticesThatAnotherFileStandsAtTheAddress) {
    struct Case {
        const char* name;
        std::size_t messages;
        std::size_t length;
        bool atTheEnd; // rather than half-way
    };
    for (const Case& c : {Case{"before more is read", 50, 20'000, false},
                          Case{"after all has been read ahead", 3, 20, true}}) {
        SCOPED_TRACE(c.name);
        const TemporaryFolder folder;
        std::string archive;
        for (std::size_t count = 0; count < c.messages; ++count)
            archive += envelope + "Subject: x\n\n" + std::string(c.length, 'a') + "\n\n";
        folder.write("a.mbox", archive);
        const EntryList entries = collectionOf(folder.url("a.mbox")).entries;
        int questions = 0;
        MailSearch::scan(
            entries, "aaa", [&] { return ++questions, false; }, Rules::standard);
        int left = c.atTheEnd ? questions : questions / 2;
        const Cancelled hook = [&] {
            if (--left == 0) {
                folder.write("b.mbox", archive);
                std::filesystem::rename(folder.path("b.mbox"), folder.path("a.mbox"));
            }
            return false;
        };
        EXPECT_EQ(errorOf([&] { MailSearch::scan(entries, "aaa", hook, Rules::standard); }), "sourceChanged");
    }
}

TEST(MailSearch, StopsWhenItIsCancelled) {
    const TemporaryFolder folder;
    const std::string bytes =
        Mail().part(Mail().text("Hello")).part(Mail().file("a", "image/png", std::string(400'000, 'a')));
    const EntryList entries = {fileEntry(folder, "a.eml", bytes, 0), fileEntry(folder, "b.eml", bytes, 1)};
    int polls = 0;
    MailSearch::scan(
        entries, "nothing", [&] { return ++polls, false; }, Rules::standard);
    EXPECT_EQ(polls, 40) << "for each message: before it, its chunks, what decoding asks, and at its end";
    for (int stop = 1; stop <= polls; ++stop) {
        int asked = 0;
        const Cancelled cancelled = [&] { return ++asked >= stop; };
        EXPECT_EQ(errorOf([&] { MailSearch::scan(entries, "nothing", cancelled, Rules::standard); }),
                  "cancelled");
    }
    const EntryList many(300, entries.front());
    polls = 0;
    MailSearch::matching(
        many, "nothing", [&] { return ++polls, false; }, Rules::standard);
    EXPECT_EQ(polls, 4) << "before entries 0, 128 and 256, and at the end";
    EXPECT_EQ(errorOf([&] {
                  MailSearch::matching(
                      many, "a", [&] { return --polls == 0; }, Rules::standard);
              }),
              "cancelled");
}

TEST(MailSearch, ReadsTheSameTextsAsOpeningEachMessage) {
    EntryList entries;
    for (const auto& sample : std::filesystem::directory_iterator(TESSEL_SOURCE_DIR "/samples"))
        std::ranges::copy(collectionOf(URL::file(sample.path().string())).entries,
                          std::back_inserter(entries));
    ASSERT_GT(entries.size(), 20U);
    for (const std::string_view query :
         {"the", "welcome", "é", "É", "ü", "e", "ß", "SS", "mail", "中", "の", "И", "и", "한", "tessel mail",
          "i", "ı", "not to be found anywhere"}) {
        for (const Rules rules : {Rules::standard, Rules::turkic}) {
            EntryList found;
            std::int64_t unreadable = 0;
            const auto isIn = [&](std::string_view text) { return isPlainlyIn(text, query, rules); };
            for (const SharedEntry& entry : entries) {
                bool matches = isIn(entry->subject) || isIn(entry->from) || isIn(entry->recipients);
                try {
                    if (!matches) {
                        const MailMessage message = MailReader::message(*entry, never);
                        matches = isIn(message.to) || isIn(message.cc) || isIn(message.plain) ||
                                  isIn(SafeHTML::searchableText(message.html));
                    }
                } catch (const MailError&) {
                    ++unreadable;
                }
                if (matches) found.push_back(entry);
            }
            const MailSearch::Results results = MailSearch::scan(entries, query, never, rules);
            EXPECT_EQ(ids(results.entries), ids(found)) << query;
            EXPECT_EQ(results.unreadable, unreadable) << query;
        }
    }
}

TEST(MailSearch, OrdersByDateThenByIDWithUndatedEntriesLast) {
    const auto entry = [](std::int64_t id, std::optional<double> timestamp = std::nullopt) {
        return shared({.id = id, .timestamp = timestamp});
    };
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        EntryList list;
        for (int count = 0; count < round % 40; ++count) {
            // Entries of several collections may have one id.
            const std::int64_t id = round % 2 == 0 ? count : static_cast<std::int64_t>(random() % 8);
            const double timestamp =
                (static_cast<double>(random() % 8) - 4) * (random() % 2 == 0 ? 0.5 : 1e9);
            list.push_back(random() % 4 == 0 ? entry(id) : entry(id, timestamp));
        }
        for (const bool newestFirst : {true, false}) {
            EntryList expected = list;
            std::ranges::stable_sort(expected, [newestFirst](const auto& a, const auto& b) {
                if (a->timestamp && b->timestamp && *a->timestamp != *b->timestamp)
                    return newestFirst == (*a->timestamp > *b->timestamp);
                if (a->timestamp.has_value() != b->timestamp.has_value()) return a->timestamp.has_value();
                return a->id < b->id;
            });
            ASSERT_EQ(MailSearch::ordered(list, newestFirst), expected);
        }
    }
}

} // namespace
} // namespace MailCore
