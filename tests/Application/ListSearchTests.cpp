// When the list is made again, and that no answer gets lost or comes to the wrong question.
#include "TesselMail/Model/ListSearch.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Sources/MailReader.h"
#include "tests/Application/ModelFixture.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using MailCore::MailCollection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Subjects = std::vector<std::string>;

class Lists : public MainLoopTest {
protected:
    using CollectionID = OpenSources::CollectionID;

    Lists() {
        list_->filteredEntries.signalChanged().connect(
            [this] { published_.push_back(subjectsOf(**list_->filteredEntries)); });
    }
    ~Lists() override {
        list_.reset();
        sources_.closeAll();
        finishWork();
    }

    /// An entry like one of an archive that is dated the later the higher its number.
    static MailCore::SharedEntry entry(std::int64_t id, const std::string& subject) {
        MailCore::MessageEntry made;
        made.id = id;
        made.subject = subject;
        made.timestamp = static_cast<double>(id);
        return std::make_shared<const MailCore::MessageEntry>(std::move(made));
    }
    MailCollection placeholder(const std::string& name) {
        return OpenSources::placeholder(URL::file("/nowhere/" + name));
    }
    /// Adds messages to what is being indexed.
    void arrive(const MailCollection& placeholder, const Subjects& subjects) {
        const MailCollection* const listed = sources_.find(placeholder.id);
        auto id = static_cast<std::int64_t>(listed ? listed->entries.size() : 0);
        MailCore::EntryList entries;
        for (const std::string& subject : subjects) entries.push_back(entry(id++, subject));
        const Changing changing(changes_);
        sources_.add(entries, placeholder,
                     std::make_shared<const ScopedMailFile>(ScopedMailFile{placeholder.url}));
    }
    MailCollection open(const std::string& name, const Subjects& subjects) {
        MailCollection made = placeholder(name);
        arrive(made, subjects);
        return made;
    }
    static Subjects subjectsOf(const MailCore::EntryList& entries) {
        Subjects subjects;
        for (const auto& entry : entries) subjects.emplace_back(entry->subject.view());
        return subjects;
    }
    Subjects listed() const {
        const ArchiveWork::SharedList entries = list_->entries();
        return subjectsOf(*entries);
    }
    void settle() {
        waitUntil([this] { return !list_->isPending(); });
    }

    Changes changes_;
    OpenSources sources_{changes_};
    std::vector<std::exception_ptr> failures_;
    std::vector<Subjects> published_; // every list, in the order of its publication
    std::optional<ListSearch> list_{std::in_place, changes_, sources_,
                                    [this](const std::exception_ptr& error) { failures_.push_back(error); }};
};

TEST_F(Lists, ShowWhatIsStoredUntilItIsOrdered) {
    EXPECT_THAT(listed(), IsEmpty());
    const auto a = open("a.mbox", {"old", "new"});
    list_->list(a.id);
    EXPECT_TRUE(list_->isPending());
    EXPECT_THAT(listed(), ElementsAre("old", "new"));
    settle();
    EXPECT_THAT(listed(), ElementsAre("new", "old"));
    list_->setNewestFirst(false);
    EXPECT_THAT(listed(), ElementsAre("new", "old")) << "until the new order is there";
    settle();
    EXPECT_THAT(listed(), ElementsAre("old", "new"));
    list_->list(std::nullopt);
    EXPECT_FALSE(list_->isPending());
    EXPECT_THAT(listed(), IsEmpty());
}

TEST_F(Lists, LoseNoEntryThatArrivesWhileASearchIsUnderWay) {
    const auto a = open("a.mbox", {"one"});
    list_->list(a.id);
    settle();
    arrive(a, {"two"});
    published_.clear();
    list_->refresh(); // has its entries from here on
    EXPECT_TRUE(list_->isPending());
    for (int number = 0; number < 100; ++number) {
        arrive(a, {"more"});
        list_->refresh();
    }
    settle();
    EXPECT_THAT(listed(), SizeIs(102));
    EXPECT_THAT(published_, ElementsAre(SizeIs(2), SizeIs(102))) << "one more search for all of them";
}

TEST_F(Lists, KeepWhatIsShownWhileARefreshIsUnderWay) {
    const auto a = open("a.mbox", {"apple one", "pear"});
    list_->list(a.id);
    list_->setQuery("apple");
    EXPECT_THAT(listed(), IsEmpty()) << "another question";
    EXPECT_TRUE(*list_->searching);
    settle();
    arrive(a, {"apple two"});
    published_.clear();
    list_->refresh();
    EXPECT_THAT(listed(), ElementsAre("apple one"));
    settle();
    EXPECT_THAT(published_, ElementsAre(ElementsAre("apple two", "apple one")));
    EXPECT_FALSE(*list_->searching);
}

TEST_F(Lists, NeverHoldTheAnswerToAnotherQuestion) {
    const auto a = open("a.mbox", {"apple", "apple pie"});
    const auto b = open("b.mbox", {"bread"});
    struct Case {
        std::string_view name;
        std::function<void()> ask;
        Subjects answer;
    };
    const Case cases[] = {
        {"about another collection", [&] { list_->list(b.id); }, {"bread"}},
        {"for another text", [&] { list_->setQuery("pie"); }, {"apple pie"}},
        {"in another order", [&] { list_->setNewestFirst(false); }, {"apple", "apple pie"}},
        {"about nothing", [&] { list_->list(std::nullopt); }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        list_->setNewestFirst(true);
        list_->list(a.id);
        settle();
        list_->refresh(); // whose answer is on its way
        published_.clear();
        c.ask();
        waitUntil([&] { return !list_->isPending() && listed() == c.answer; });
        drain();
        for (const Subjects& subjects : published_)
            EXPECT_TRUE(subjects.empty() || subjects == c.answer) << subjects.front();
        EXPECT_EQ(listed(), c.answer);
    }
}

TEST_F(Lists, ForgetTheTextWithTheCollection) {
    const auto a = open("a.mbox", {"apple"});
    const auto b = open("b.mbox", {"bread"});
    list_->list(a.id);
    list_->setQuery("apple");
    settle();
    list_->list(b.id);
    EXPECT_EQ(*list_->query, "");
    EXPECT_FALSE(*list_->searching);
    settle();
    EXPECT_THAT(listed(), ElementsAre("bread"));
}

TEST_F(Lists, TellOfASearchThatFailedAndGoOn) {
    const MailCore::Testing::TemporaryFolder folder;
    const URL file = folder.write("a.eml", Mail().subject("letter").text("Hello").string());
    const MailCore::IndexLimits limits(MailCore::Limits::messages, MailCore::Limits::indexBytes);
    MailCollection read = MailCore::MailReader::collection(
        file, MailCore::never, [](std::size_t) {}, limits, [](std::span<const MailCore::SharedEntry>) {});
    const CollectionID id = read.id;
    sources_.finish(std::move(read), std::make_shared<const ScopedMailFile>(ScopedMailFile{file}));
    list_->list(id);
    settle();
    folder.touch("a.eml");
    list_->setQuery("hello"); // which only the file can tell
    settle();
    EXPECT_THAT(failures_, SizeIs(1));
    EXPECT_FALSE(*list_->searching);
    list_->setQuery("");
    settle();
    EXPECT_THAT(listed(), ElementsAre("letter"));
    EXPECT_THAT(failures_, SizeIs(1));
}

TEST_F(Lists, AreLeftInPeaceWhenTheyAreGone) {
    const auto a = open("a.mbox", {"one", "two"});
    for (const bool underWay : {false, true}) {
        list_->list(a.id);
        if (underWay) {
            settle();
            list_->refresh();
        }
        list_.reset(); // what comes later is watched by a sanitizer
        finishWork();
        bool paused = false;
        InterfaceThread::postAfter(std::chrono::milliseconds(250), [&] { paused = true; });
        waitUntil([&] { return paused; });
        EXPECT_THAT(failures_, IsEmpty());
        list_.emplace(changes_, sources_, [](const std::exception_ptr&) {});
    }
}

} // namespace
} // namespace TesselMail::Testing
