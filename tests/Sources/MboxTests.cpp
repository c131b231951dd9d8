#include "MailCore/Sources/Mbox.h"

#include "tests/Sources/SourceSupport.h"
#include "tests/Support/Case.h"
#include "tests/Support/TemporaryFolder.h"

#include <filesystem>

namespace MailCore {
namespace {

using namespace Testing;

const std::string envelope = "From a@example.org Tue Jan  2 09:15:30 2024\n";

std::string headersOf(std::string_view subject) {
    return "Subject: " + std::string(subject) + "\n\n";
}

std::string message(std::string_view subject, std::string_view body) {
    return envelope + headersOf(subject) + std::string(body);
}

/// The subjects of an archive's messages, each with the bytes of its range.
std::vector<std::string> indexed(const std::string& archive) {
    const TemporaryFolder folder;
    const URL url = folder.write("a.mbox", archive);
    std::vector<std::string> result;
    for (const SharedEntry& entry : collectionOf(url).entries) {
        EXPECT_EQ(entry->id, static_cast<std::int64_t>(result.size()));
        result.push_back(archive.substr(entry->offset, static_cast<std::size_t>(entry->length)));
    }
    return result;
}

TEST(Mbox, FindsExactlyTheMessages) {
    struct Case {
        std::string_view name;
        std::string archive;
        std::vector<std::string> messages;
    };
    const std::string one = headersOf("one") + "First\n\n";
    const std::string two = headersOf("two") + "Second";
    const std::string longEnvelope = "From " + std::string(969, 'a') + " Tue Jan  2 09:15:30 2024\n";
    const Case cases[] = {
        {"two messages", envelope + one + envelope + two, {one, two}},
        {"text before the first", "preface\n\n" + envelope + one, {one}},
        {"a sentence is no envelope",
         envelope + one + "From here on, we go\nSubject: x\n\n",
         {one + "From here on, we go\nSubject: x\n\n"}},
        {"a hyphen for the sender", "From - \n" + one + "From -\n" + two, {one, two}},
        {"no known header behind it",
         envelope + one + envelope + "X-Other: 1\n\n" + envelope + two,
         {one + envelope + "X-Other: 1\n\n", two}},
        {"CR LF", "From - Tue Jan\r\nSubject: s\r\n\r\nx\r\n", {"Subject: s\r\n\r\nx\r\n"}},
        {"an envelope after a header line without a blank line",
         envelope + "Subject: a\nno field\n" + envelope + two,
         {"Subject: a\nno field\n", two}},
        {"an envelope given back by the header scan", // "From -" holds no colon, so it ends the block
         envelope + "Subject: a\nFrom - Tue\nSubject: b\n\n",
         {"Subject: a\n", "Subject: b\n\n"}},
        {"an envelope of 1,000 bytes", longEnvelope + one, {one}},
        {"an envelope at the end with nothing behind", envelope + one + envelope, {one + envelope}},
        {"no envelope, but a header block", "Subject: s\nFrom: a\n\nx", {"Subject: s\nFrom: a\n\nx"}},
        {"an empty message between", envelope + "Subject: x\n" + "From - Tue\n" + one, {"Subject: x\n", one}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(indexed(c.archive), c.messages);
    }
}

TEST(Mbox, TakesAnyKnownHeaderAsASign) {
    for (const std::string name : {"FROM", "Subject", "date", "To", "Message-ID", "Content-Type"})
        EXPECT_EQ(indexed(envelope + name + ": v\n\n").size(), 1U) << name;
}

TEST(Mbox, NeverTakesALineOverAThousandBytesAsEnvelope) {
    // 1,001 bytes, line end included; once read by the scan, once given back by the header scan (no colon).
    const std::string tooLong = "From - " + std::string(993, ' ') + "\n";
    ASSERT_EQ(tooLong.size(), 1'001U);
    const std::string first = message("one", "");
    EXPECT_EQ(indexed(first + tooLong + headersOf("two")).size(), 1U);
    EXPECT_EQ(indexed(envelope + "Subject: one\n" + tooLong + headersOf("two")).size(), 1U);
    const std::string fits = "From - " + std::string(992, ' ') + "\n";
    EXPECT_EQ(indexed(first + fits + headersOf("two")).size(), 2U);
    EXPECT_EQ(indexed(envelope + "Subject: one\n" + fits + headersOf("two")).size(), 2U);
}

TEST(Mbox, BelievesASingleContentLengthThatFits) {
    const std::string inner = message("inner", "x\n");
    const auto outer = [&](std::string_view fields) {
        return envelope + "Subject: outer\n" + std::string(fields) + "\n";
    };
    const std::string size = std::to_string(inner.size());
    const Case<std::string, std::size_t> cases[] = {
        {"covering the body", "Content-Length: " + size + "\n", 2},
        {"in any case", "CONTENT-LENGTH: +" + size + "\n", 2},
        {"past the end of the file", "Content-Length: 1000000\n", 3},
        {"past what an integer holds", "Content-Length: 99999999999999999999\n", 3},
        {"no number", "Content-Length: " + size + "x\n", 3},
        {"negative", "Content-Length: -1\n", 3},
        {"given twice", "Content-Length: " + size + "\nContent-Length: " + size + "\n", 3},
        {"absent", "", 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(indexed(outer(c.given) + inner + message("last", "")).size(), c.expected);
    }
}

TEST(Mbox, TellsEnvelopesFromSentences) {
    struct Case {
        std::string_view line;
        bool isEnvelope;
    };
    const Case cases[] = {
        {"From a Mon \n", true},
        {"From a@b Tue\n", true},
        {"From a Tuesday\n", false},
        {"From a  Mon \n", false},
        {"From a mon \n", false},
        {"From a Mon", false},
        {"From  Mon \n", false},
        {"From -\n", true},
        {"From -", true},
        {"From -x\n", false},
        {"From \xFF\xFE Mon\n", true},
        {"from a Mon \n", false},
        {"From - Mon\n", true},
        {"From a\u00A0b Mon \n", false},
        {"From a Mon\u00A0", true},
        {"From ", false},
        {"From a\tMon \n", false},
    };
    for (const Case& c : cases) EXPECT_EQ(MailReader::isEnvelope(bytesOf(c.line)), c.isEnvelope) << c.line;
}

TEST(Mbox, FillsEntriesFromTheHeaders) {
    const TemporaryFolder folder;
    const URL url = folder.write("a.mbx", envelope + "Subject: s\nDate: Tue, 2 Jan 2024 09:15:30 +0800\n\n");
    const MailCollection collection = collectionOf(url);
    ASSERT_EQ(collection.entries.size(), 1U);
    const MessageEntry& entry = *collection.entries.front();
    EXPECT_EQ(collection.kind, "MBOX");
    EXPECT_EQ(entry.subject.view(), "s");
    EXPECT_EQ(entry.timestamp, 1704158130);
    EXPECT_EQ(entry.file, url);
    EXPECT_EQ(entry.revision, FileRevision::capture(MailReader::openSource(url)));
    EXPECT_EQ(collection.metadataBytes, entry.metadataBytes());
}

TEST(Mbox, StopsAtTheBudgetWithWhatItHas) {
    const TemporaryFolder folder;
    const URL url = folder.write("a.mbox", message("1", "") + message("2", "") + message("3", ""));
    std::vector<std::size_t> batches;
    std::size_t reported = 0;
    const auto index = [&](std::int64_t messages, std::int64_t bytes) {
        batches.clear();
        return MailReader::collection(
            url, never, [&](std::size_t count) { reported = count; }, {messages, bytes},
            [&](std::span<const SharedEntry> batch) { batches.push_back(batch.size()); });
    };
    const MailCollection two = index(2, Limits::indexBytes);
    EXPECT_EQ(two.entries.size(), 2U);
    EXPECT_TRUE(two.indexLimitReached);
    EXPECT_EQ(batches, (std::vector<std::size_t>{1, 1}));
    EXPECT_EQ(reported, 2U);
    const std::int64_t cost = two.entries.front()->metadataBytes();
    EXPECT_EQ(index(10, 2 * cost).entries.size(), 2U); // exactly filled
    EXPECT_EQ(index(10, 2 * cost - 1).entries.size(), 1U);
    EXPECT_FALSE(index(10, 3 * cost).indexLimitReached);
    EXPECT_TRUE(index(0, 0).entries.empty());
}

TEST(Mbox, RefusesWhatIsNoArchive) {
    const TemporaryFolder folder;
    const Case<std::string, std::string_view> cases[] = {
        {"an empty file", "", "malformed"},
        {"one byte", "F", "malformed"},
        {"text", "Hello\nworld\n", "malformed"},
        {"headers without sender or subject", "X-One: 1\nDate: 2\n\n", "malformed"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const URL url = folder.write("a.mbox", c.given);
        EXPECT_EQ(errorOf([&] { collectionOf(url); }), c.expected);
    }
}

TEST(Mbox, ReadsAHugeSparseArchive) {
    const TemporaryFolder folder;
    constexpr std::uintmax_t size = (std::uintmax_t{1} << 31) + 1;
    const URL url = folder.write("a.mbox", "");
    std::filesystem::resize_file(folder.path("a.mbox"),
                                 size); // behind the headers one line of NULs, 2 GiB long
    std::fstream(folder.path("a.mbox"), std::ios::in | std::ios::out) << message("one", "");
    const MailCollection collection = collectionOf(url);
    ASSERT_EQ(collection.entries.size(), 1U);
    EXPECT_EQ(collection.entries.front()->length, static_cast<std::int64_t>(size - envelope.size()));
    EXPECT_EQ(errorOf([&] { MailReader::message(*collection.entries.front(), never); }), "tooLarge");
}

} // namespace
} // namespace MailCore
