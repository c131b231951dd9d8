#include "MailCore/Model/MailError.h"
#include "TesselMail/Platform/SerialQueue.h"
#include "tests/Application/ModelFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <future>

namespace TesselMail::Testing {
namespace {

using MailCore::MailError;
using testing::ElementsAre;

MailCore::SharedEntry entry(std::int64_t id, std::optional<double> timestamp = {}) {
    MailCore::MessageEntry value;
    value.id = id;
    value.timestamp = timestamp;
    return std::make_shared<const MailCore::MessageEntry>(std::move(value));
}

std::vector<std::int64_t> ids(const MailCore::EntryList& entries) {
    std::vector<std::int64_t> result;
    for (const auto& one : entries) result.push_back(one->id);
    return result;
}

TEST(IndexDelivery, HandsOverWhatCameTogetherAtOnce) {
    std::vector<std::vector<std::int64_t>> received;
    const auto delivery =
        IndexDelivery::create([&](MailCore::EntryList list) { received.push_back(ids(list)); });
    const MailCore::EntryList first = {entry(0), entry(1)};
    const MailCore::EntryList second = {entry(2)};
    delivery->push(first);
    delivery->push(second);
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    delivery->flush();
    EXPECT_THAT(received, ElementsAre(ElementsAre(0, 1, 2)));
    delivery->push(second);
    delivery->flush();
    EXPECT_THAT(received.back(), ElementsAre(2));
}

TEST(SerialQueue, RunsAllThatWasGivenToItBeforeItGoes) {
    constexpr int pieces = 10'000; // far more than can run before the queue begins to go
    std::vector<int> ran;
    std::promise<void> begin;
    {
        SerialQueue queue("test.queue");
        queue.submit([begun = begin.get_future().share()] { begun.wait(); });
        for (int number = 0; number < pieces; ++number)
            queue.submit([&ran, number] { ran.push_back(number); });
        begin.set_value();
    }
    ASSERT_EQ(ran.size(), std::size_t{pieces});
    EXPECT_TRUE(std::ranges::is_sorted(ran));
}

class Work : public ModelTest {
protected:
    template <typename Value>
    static Task await(Later<Value> later, std::string& outcome) {
        try {
            co_await later;
            outcome = "done";
        } catch (const MailError& error) {
            outcome = error.name();
        }
    }
    template <typename Value>
    std::string outcomeOf(Later<Value> later) {
        std::string outcome;
        await(std::move(later), outcome);
        waitUntil([&] { return !outcome.empty(); });
        return outcome;
    }
    static CancellationToken stopped() {
        auto token = std::make_shared<Cancellation>();
        token->stop();
        return token;
    }
};

TEST_F(Work, DoesNothingForAStoppedToken) {
    auto missing = std::make_shared<MailCore::MessageEntry>();
    missing->file = folder_.url("missing.eml");
    const auto attachment = std::make_shared<const MailCore::MailAttachment>();
    const auto scope = std::make_shared<const ScopedMailFile>(ScopedMailFile{folder_.url()});
    EXPECT_EQ(outcomeOf(ArchiveWork::read(missing, nullptr, stopped())), "cancelled");
    EXPECT_EQ(outcomeOf(ArchiveWork::attachment(attachment, stopped())), "cancelled");
    EXPECT_EQ(outcomeOf(ArchiveWork::search({entry(0)}, "", true, {}, stopped())), "cancelled");
    EXPECT_EQ(
        outcomeOf(ArchiveWork::isCurrent(std::make_shared<const MailCore::MessageEntry>(), scope, stopped())),
        "done");
}

TEST_F(Work, DecodesAnAttachedMessageByWhatItCarries) {
    struct Case {
        std::string_view name;
        std::string file;
        std::string type;
        bool embedded;
        std::string_view outcome;
    };
    const Case cases[] = {
        {"Outlook's type in capitals", "a", "APPLICATION/VND.MS-OUTLOOK", false, "malformed"},
        {"Outlook's extension in capitals", "a.MSG", "application/octet-stream", false, "malformed"},
        {"a generic type", "a.eml", "application/octet-stream", false, "done"},
        {"a message that was decoded before", "a.msg", "application/vnd.ms-outlook", true, "done"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MailCore::MailAttachment attachment;
        attachment.name = c.file;
        attachment.type = c.type;
        attachment.bytes = Mail().subject("inner").text("Hello").bytes();
        if (c.embedded) attachment.embedded.emplace_back();
        EXPECT_EQ(
            outcomeOf(ArchiveWork::attachment(std::make_shared<const MailCore::MailAttachment>(attachment),
                                              std::make_shared<Cancellation>())),
            c.outcome);
    }
}

} // namespace
} // namespace TesselMail::Testing
