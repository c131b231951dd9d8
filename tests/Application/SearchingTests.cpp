// What the message list shows while people type, sort, switch and open.
#include "tests/Application/ModelFixture.h"
#include "tests/Support/Case.h"

#include <unistd.h>

namespace TesselMail::Testing {
namespace {

class Searching : public ModelTest {
protected:
    /// Waits for the answer to the last question.
    void waitForList(const std::vector<std::string>& subjects) {
        waitUntil([&] { return !*model_->searching && listed() == subjects; });
    }
    URL mbox(const std::string& name, const std::vector<std::string>& subjects) {
        return folder_.write(name, mailbox(subjects));
    }
};

TEST_F(Searching, ListsTheMessagesThatHoldTheText) {
    const MailCore::Testing::Case<std::string, std::vector<std::string>> cases[] = {
        {"a subject in another case", "MINUTES", {"Minutes of May", "Minutes"}},
        {"blanks around the text", "  minutes of ", {"Minutes of May"}},
        {"a text that only the body has", "hello", {"Bread", "Minutes of May", "Minutes"}},
        {"a text that nothing has", "cheese", {}},
        {"blanks only", "   ", {"Bread", "Minutes of May", "Minutes"}},
    };
    open({mbox("a.mbox", {"Minutes", "Minutes of May", "Bread"})});
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        model_->setQuery(c.given);
        waitForList(c.expected);
        EXPECT_EQ(*model_->searchUnreadable, 0);
    }
}

TEST_F(Searching, EmptiesTheListForAnotherTextAndKeepsItForAnotherOrder) {
    open({mbox("a.mbox", {"one", "two"})});
    model_->setNewestFirst(false);
    EXPECT_EQ(listed(), (std::vector<std::string>{"two", "one"})) << "until the new order has come";
    EXPECT_FALSE(*model_->searching);
    waitForList({"one", "two"});

    model_->setQuery("two");
    EXPECT_TRUE(*model_->searching);
    EXPECT_TRUE(listed().empty());
    waitForList({"two"});
    model_->setQuery("two ");
    EXPECT_EQ(listed(), std::vector<std::string>{"two"}) << "the same question";
    waitForList({"two"});
}

TEST_F(Searching, AnswersTheLastOfQuickQuestionsOnly) {
    open({mbox("a.mbox", {"bat", "ball", "bread"})});
    std::vector<std::vector<std::string>> lists;
    sigc::connection watching =
        model_->filteredEntries.signalChanged().connect([&] { lists.push_back(listed()); });
    for (const char* text : {"b", "ba", "bal", "ball"}) model_->setQuery(text);
    waitForList({"ball"});
    watching.disconnect();
    const std::vector<std::string> none;
    EXPECT_EQ(lists.back(), std::vector<std::string>{"ball"});
    lists.pop_back();
    for (const auto& list : lists) EXPECT_EQ(list, none) << "no earlier answer in between";
}

TEST_F(Searching, CountsWhatCouldNotBeReadAndFindsItByItsEntry) {
    const URL file = letter("a.eml", "Kept subject");
    open({file});
    ASSERT_EQ(::unlink(file.path().c_str()), 0);
    model_->setQuery("kept");
    waitForList({"Kept subject"});
    EXPECT_EQ(*model_->searchUnreadable, 0);
    model_->setQuery("hello");
    waitUntil([this] { return !*model_->searching; });
    EXPECT_EQ(*model_->searchUnreadable, 1);
    EXPECT_TRUE(listed().empty());
    model_->setQuery("");
    EXPECT_EQ(*model_->searchUnreadable, 0) << "another question";
    waitForList({"Kept subject"});
}

TEST_F(Searching, SaysWhenTheSourceChanged) {
    const URL file = mbox("a.mbox", {"one", "two"});
    open({file});
    folder_.write("a.mbox", mailbox({"one", "two", "three"}));
    model_->setQuery("hello");
    waitUntil([this] { return model_->error->has_value(); });
    EXPECT_EQ(**model_->error, "The source file changed. Reopen it to update the message list.");
    EXPECT_FALSE(*model_->searching);
    EXPECT_TRUE(listed().empty());
}

TEST_F(Searching, DropsTheAnswerWhenPeopleMoveOn) {
    struct Case {
        std::string_view name;
        std::function<void(AppModel&)> moveOn;
        std::vector<std::string> subjects;
    };
    const Case cases[] = {
        {"to another collection", [](AppModel& m) { m.selectCollection((*m.collections)[1].id); }, {"other"}},
        {"closing the collection", [](AppModel& m) { m.closeCollection((*m.collections)[0].id); }, {"other"}},
        {"closing everything", [](AppModel& m) { m.closeAll(); }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        open({mbox("a.mbox", {"one", "two"}), letter("b.eml", "other")});
        ASSERT_EQ(listed().size(), 2U);
        model_->setQuery("two");
        c.moveOn(*model_);
        EXPECT_EQ(*model_->query, "");
        EXPECT_FALSE(*model_->searching);
        waitForList(c.subjects);
        EXPECT_FALSE(*model_->error);
        model_->closeAll();
    }
}

TEST_F(Searching, FollowsAGrowingArchiveWithoutEmptyingTheList) {
    std::vector<std::string> subjects;
    for (int number = 0; number < 30'000; ++number)
        subjects.push_back((number % 3 == 0 ? "apple " : "pear ") + std::to_string(number));
    const URL file = mbox("big.mbox", subjects);
    model_->open({file});
    waitUntil([this] { return !model_->collections->empty(); });
    model_->setQuery("apple");
    std::size_t longest = 0;
    bool shrank = false;
    sigc::connection watching = model_->filteredEntries.signalChanged().connect([&] {
        const std::size_t count = (*model_->filteredEntries)->size();
        shrank = shrank || count < longest;
        longest = std::max(longest, count);
    });
    // The end of the indexing may ask for one more refresh of a list that is complete already.
    waitUntil([this] {
        return !*model_->busy && !*model_->searching && (*model_->filteredEntries)->size() == 10'000;
    });
    watching.disconnect();
    EXPECT_FALSE(shrank);
    EXPECT_EQ(*model_->progress, subjects.size());
}

class Capturing : public ModelTest {
protected:
    static URL link(const std::string& text) { return URL::parse(text).value_or(URL()); }
};

TEST_F(Capturing, ShowsTheLinkInsteadOfAMessageAndKeepsWhatIsOpen) {
    open({letter("a.eml", "shown")});
    waitUntil([this] { return model_->currentMessageReady(); });
    model_->setQuery("x");
    model_->setShowDetails(true);
    model_->open({link("mailto:ann?subject=Hi")});
    ASSERT_TRUE(*model_->capture);
    EXPECT_EQ((*model_->capture)->text(), "To: ann\nSubject: Hi");
    EXPECT_EQ(openNames(), std::vector<std::string>{"a.eml"});
    EXPECT_FALSE(*model_->selectedCollection);
    EXPECT_FALSE(*model_->selectedEntry);
    EXPECT_EQ(shownSubject(), "nothing");
    EXPECT_EQ(*model_->query, "");
    EXPECT_FALSE(*model_->showDetails);
    EXPECT_TRUE(listed().empty());
    EXPECT_EQ(desktop_.presented, 1);

    model_->open({link("MAILTO:ben")});
    EXPECT_EQ((*model_->capture)->to, "ben") << "the second replaces the first";
    model_->selectCollection(idOf(0));
    EXPECT_FALSE(*model_->capture);
    settle();
    EXPECT_EQ(shownSubject(), "shown");
}

TEST_F(Capturing, GoesBackToWhatTheClosedLinkTookThePlaceOf) {
    open({letter("a.eml", "first"), letter("b.eml", "second")});
    model_->selectCollection(idOf(1));
    settle();
    model_->open({link("mailto:ann")});
    model_->open({link("mailto:ben")});
    model_->closeCapture();
    EXPECT_FALSE(*model_->capture);
    settle();
    EXPECT_EQ(shownSubject(), "second");

    model_->open({link("mailto:ann")});
    model_->closeCollection(idOf(1));
    model_->closeCapture();
    EXPECT_FALSE(*model_->capture);
    EXPECT_FALSE(*model_->selectedCollection) << "what the link took the place of was closed meanwhile";
}

TEST_F(Capturing, TakesAWholeRequestForALinkAmongItsFirstTwenty) {
    std::vector<URL> urls{letter("a.eml", "a"), letter("b.eml", "b"), link("mailto:ann")};
    model_->open(urls);
    EXPECT_TRUE(*model_->capture);
    EXPECT_FALSE(*model_->busy);
    EXPECT_TRUE(model_->collections->empty());

    model_->closeAll();
    EXPECT_FALSE(*model_->capture);
    std::vector<URL> late(20, letter("c.eml", "c"));
    late.push_back(link("mailto:ann"));
    open(late);
    EXPECT_FALSE(*model_->capture);
    EXPECT_EQ(openNames(), std::vector<std::string>{"c.eml"});
}

TEST_F(Capturing, RefusesAnEndlessLinkAndChangesNothing) {
    open({letter("a.eml", "shown")});
    waitUntil([this] { return model_->currentMessageReady(); });
    model_->open({link("mailto:" + std::string(131'072, 'a'))});
    EXPECT_EQ(**model_->error,
              "This file could not be read. Check that it is a complete, supported email file.");
    EXPECT_FALSE(*model_->capture);
    EXPECT_EQ(shownSubject(), "shown");
    EXPECT_EQ(desktop_.presented, 0);
}

TEST_F(Capturing, StopsAnOpenRunAndLeavesWhatArrived) {
    std::vector<std::string> subjects(100'000, "one of many");
    model_->open({folder_.write("big.mbox", mailbox(subjects))});
    waitUntil([this] { return !model_->collections->empty(); });
    model_->open({link("mailto:ann")});
    EXPECT_FALSE(*model_->busy);
    ASSERT_EQ(openNames(), std::vector<std::string>{"big.mbox"});
    EXPECT_TRUE(model_->collections->front().indexInterrupted);
    EXPECT_FALSE(model_->collections->front().isIndexing);
    const std::size_t arrived = model_->collections->front().entries.size();
    for (int turn = 0; turn < 50; ++turn) {
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(2'000);
    }
    EXPECT_EQ(model_->collections->front().entries.size(), arrived);
    EXPECT_TRUE(*model_->capture);
    EXPECT_FALSE(*model_->error);
}

} // namespace
} // namespace TesselMail::Testing
