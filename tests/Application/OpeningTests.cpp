#include "tests/Application/ModelFixture.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

class Opening : public ModelTest {};

TEST_F(Opening, ListsEverySourceInOrderAndShowsTheFirst) {
    const URL archive = folder_.write("box.mbox", mailbox({"one", "two", "three"}));
    folder_.write("Mail/cur/1", Mail().subject("in a folder").text("Hello").string());
    folder_.write("Mail/new/2", Mail().subject("and new").text("Hello").string());
    open({archive, letter("a.eml", "a letter"), folder_.url("Mail")});

    EXPECT_THAT(openNames(), ElementsAre("box.mbox", "a.eml", "Mail"));
    EXPECT_EQ(*model_->selectedCollection, idOf(0));
    EXPECT_EQ(shownSubject(), "one");
    EXPECT_THAT(listed(), ElementsAre("three", "two", "one"));
    EXPECT_EQ(*model_->error, std::nullopt);
    for (const auto& collection : *model_->collections) EXPECT_FALSE(collection.isIndexing);
}

TEST_F(Opening, TakesTwentyDistinctFilesOfARequest) {
    std::vector<URL> urls;
    for (int number = 0; number < 21; ++number)
        urls.push_back(letter(std::to_string(number) + ".eml", "letter"));
    urls.insert(urls.begin() + 1, urls.front());
    urls.push_back(*URL::parse("https://tessel.example/a.eml"));
    open(urls);
    EXPECT_THAT(*model_->collections, SizeIs(20));
    EXPECT_EQ(openNames().back(), "19.eml");
    EXPECT_EQ(*model_->error, "1 file was not opened: at most 20 are opened at a time.");
    model_->open({urls.front()}, 2);
    settle();
    EXPECT_EQ(*model_->error, "2 files were not opened: at most 20 are opened at a time.");
    open({urls.front(), urls.front()});
    EXPECT_EQ(*model_->error, std::nullopt);
    preferences_.setLanguage("zh-CN");
    open(urls);
    EXPECT_EQ(*model_->error, "还有 1 个文件未打开：一次最多打开 20 个。");
}

TEST_F(Opening, OrdersByDateInBothDirectionsWithUndatedMessagesLast) {
    std::string content = mailbox({"first", "second"});
    content += "From x Mon Jan  1 10:00:00 2024\nSubject: undated\n\nHello\n\n" + mailbox({"first again"});
    open({folder_.write("box.mbox", content)});
    EXPECT_THAT(listed(), ElementsAre("second", "first", "first again", "undated"));
    model_->setNewestFirst(false);
    waitUntil([this] { return listed().front() != "second"; });
    EXPECT_THAT(listed(), ElementsAre("first", "first again", "second", "undated"));
}

TEST_F(Opening, GoesBackToAnUnchangedSourceInsteadOfReadingItAgain) {
    const URL archive = folder_.write("box.mbox", mailbox({"one", "two"}));
    open({archive});
    const auto id = idOf(0);
    model_->select(1);
    settle();
    open({letter("a.eml", "a letter")});
    ASSERT_EQ(shownSubject(), "a letter");

    open({archive});
    EXPECT_THAT(openNames(), ElementsAre("box.mbox", "a.eml"));
    EXPECT_EQ(idOf(0), id);
    EXPECT_EQ(shownSubject(), "two"); // where people were
}

TEST_F(Opening, ReplacesAChangedSourceAndKeepsItSelected) {
    struct Case {
        std::string_view name;
        std::string file;
        std::string before;
        std::string after;
    };
    const Case cases[] = {
        {"an archive", "box.mbox", mailbox({"old"}), mailbox({"new", "newer"})},
        {"one message", "a.eml", Mail().subject("old").text("1"), Mail().subject("new").text("22")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        open({folder_.write(c.file, c.before)});
        const auto id = idOf(0);
        folder_.write(c.file, c.after);
        folder_.touch(c.file);
        // Not the first of the request: the selection follows because the old copy had it.
        open({letter("other.eml", "other"), folder_.url(c.file)});
        ASSERT_THAT(*model_->collections, SizeIs(2));
        model_->selectCollection(idOf(1));
        settle();
        EXPECT_NE(idOf(1), id);
        EXPECT_EQ(shownSubject(), "new");
        model_->closeAll();
    }
}

TEST_F(Opening, KeepsWhatArrivedWhenItIsStopped) {
    std::vector<std::string> subjects(20'000, "message");
    const URL archive = folder_.write("box.mbox", mailbox(subjects));
    const URL other = letter("a.eml", "a letter");
    struct Case {
        std::string_view name;
        std::function<void()> stop;
        std::size_t open;
    };
    const Case cases[] = {
        {"by people", [this] { model_->cancel(); }, 1},
        {"by a newer request", [&] { model_->open({other}); }, 2},
        {"by closing it", [this] { model_->closeCollection(idOf(0)); }, 0},
        {"by closing all", [this] { model_->closeAll(); }, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        model_->open({archive});
        waitUntil([this] { return !model_->collections->empty(); });
        EXPECT_TRUE(model_->collections->front().isIndexing);
        c.stop();
        settle();
        ASSERT_THAT(*model_->collections, SizeIs(c.open));
        EXPECT_EQ(*model_->error, std::nullopt);
        if (c.open > 0) {
            EXPECT_TRUE(model_->collections->front().indexInterrupted);
            EXPECT_FALSE(model_->collections->front().isIndexing);
        }
        EXPECT_EQ(shownSubject(), c.open == 0 ? "nothing" : c.open == 1 ? "message" : "a letter");
        model_->closeAll();
    }
}

// Work that has ended cannot be stopped any more; its result is on its way all the same.
TEST_F(Opening, ListsNothingThatComesAfterItWasStopped) {
    for (const bool whole : {true, false}) {
        SCOPED_TRACE(whole ? "a message" : "a failure");
        model_->open({whole ? letter("a.eml", "a") : folder_.write("b.eml", "")});
        ArchiveWork::finish();
        model_->cancel();
        drain();
        EXPECT_TRUE(model_->collections->empty());
        EXPECT_EQ(*model_->error, std::nullopt);
    }
}

TEST_F(Opening, ListsALongArchiveWholeWhileBatchesArrive) {
    std::vector<std::string> subjects;
    for (int number = 0; number < 20'000; ++number) subjects.push_back("message " + std::to_string(number));
    std::size_t batches = 0;
    auto counting = model_->progress.signalChanged().connect([&] { ++batches; });
    open({folder_.write("box.mbox", mailbox(subjects))});
    EXPECT_EQ(model_->entries()->size(), 20'000U);
    EXPECT_EQ(*model_->progress, 20'000U);
    EXPECT_GT(batches, 1U);
    EXPECT_LT(batches, 1'000U);
    counting.disconnect();
}

TEST_F(Opening, NamesEveryFileThatFailedAndOpensTheOthers) {
    open({letter("a.eml", "a letter"), folder_.write("b.eml", ""), folder_.write("c.txt", "text"),
          folder_.url("missing.mbox"), letter("d.eml", "another")});
    EXPECT_THAT(openNames(), ElementsAre("a.eml", "d.eml"));
    ASSERT_TRUE(*model_->error);
    const std::string error = **model_->error;
    EXPECT_EQ(error.find("b.eml: This file could not be read."), 0U) << error;
    EXPECT_NE(error.find("\n\nc.txt: Choose an EML, EMLX,"), error.npos) << error;
    EXPECT_NE(error.find("\n\nmissing.mbox: "), error.npos) << error;
    EXPECT_EQ(shownSubject(), "a letter");
    EXPECT_EQ(folder_.count(), 4U); // nothing was written
    // A name cannot pass for a notice of its own, nor turn the one it stands in.
    struct Case {
        std::string_view name;
        std::string_view notice;
    };
    const Case cases[] = {
        {"a\n\nb.eml: fine", "a  b.eml: fine: Choose an EML"},
        {"fine \u202Etxt.c", "fine txt.c: Choose an EML"},
        {"\u2067fine\u2069 \u202A\u202Btxt.c", "fine txt.c: Choose an EML"},
    };
    for (const Case& c : cases) {
        open({folder_.write(c.name, "no mail")});
        EXPECT_EQ(model_->error->value().find(c.notice), 0U) << **model_->error;
    }
}

TEST_F(Opening, SelectsANeighbourWhenTheSelectedSourceIsClosed) {
    open({letter("a.eml", "a"), letter("b.eml", "b"), letter("c.eml", "c")});
    model_->selectCollection(idOf(1));
    settle();
    model_->closeCollection(idOf(1));
    settle();
    EXPECT_EQ(shownSubject(), "c");
    model_->closeCollection(idOf(1));
    settle();
    EXPECT_EQ(shownSubject(), "a");
    model_->closeCollection(idOf(0));
    settle();
    EXPECT_EQ(shownSubject(), "nothing");
    EXPECT_EQ(*model_->selectedCollection, std::nullopt);
    EXPECT_EQ(*model_->selectedEntry, std::nullopt);
    EXPECT_THAT(listed(), SizeIs(0));
}

TEST_F(Opening, OpensWhatPeopleChoose) {
    panels_.chosen = {letter("a.eml", "a")};
    model_->chooseFiles();
    waitUntil([this] { return !model_->collections->empty(); });
    panels_.chosen = {};
    model_->chooseFolder();
    settle();
    EXPECT_THAT(openNames(), ElementsAre("a.eml"));
}

TEST_F(Opening, ShowsTheFirstThatOpensWhenOthersFail) {
    const URL bad = folder_.write("b.eml", "");
    const URL good = letter("a.eml", "a letter");
    const URL archive = folder_.write("box.mbox", mailbox({"one", "two"}));
    const std::vector<URL> requests[] = {{bad, good, archive}, {bad, bad, archive, good}};
    for (const auto& request : requests) {
        open(request);
        EXPECT_THAT(*model_->collections, SizeIs(2));
        EXPECT_EQ(*model_->selectedCollection, idOf(0));
        EXPECT_TRUE(*model_->error);
        EXPECT_TRUE(model_->currentMessageReady());
        model_->closeAll();
    }
    // Also when it is open already, but not from under people who look at something else meanwhile.
    open({good, archive});
    open({bad, archive});
    EXPECT_EQ(shownSubject(), "one");
    model_->open({bad, good});
    model_->select(1);
    settle();
    EXPECT_EQ(shownSubject(), "two");
}

TEST_F(Opening, SaysWhyAnArchiveBringsNoMessage) {
    const std::string fill(2'048, 'x'); // an entry keeps that much of a text, or half of it
    const std::string message = "From x Mon Jan  1 10:00:00 2024\nSubject: " + fill + "\nFrom: " + fill +
                                "\nTo: " + fill + "\n\nHello\n\n";
    std::string content;
    for (int number = 0; number < 17'000; ++number) content += message;
    open({folder_.write("full.mbox", content)});
    ASSERT_TRUE(model_->active()->indexLimitReached);
    EXPECT_EQ(*model_->error, std::nullopt) << "the list says so";
    open({folder_.write("late.mbox", message)});
    EXPECT_TRUE(model_->collections->back().entries.empty());
    EXPECT_EQ(*model_->error, Texts::freeIndexMemory.english);
}

/// Fills the budget of all indexes to the last byte.
class FullMemory : public ModelTest {
protected:
    FullMemory() {
        open({folder_.write("one.mbox", message(0))});
        const std::int64_t least = model_->active()->metadataBytes;
        model_->closeAll();
        std::string content;
        for (std::int64_t left = MailCore::Limits::indexBytes; left > 0;) {
            std::int64_t cost = std::min(left, least + 3 * longest);
            if (left > cost && left - cost < least) cost -= least; // the last one costs that much, too
            content += message(static_cast<std::size_t>(cost - least));
            left -= cost;
        }
        open({folder_.write("full.mbox", content)});
    }

    /// A message whose entry takes `texts` bytes more than that of the smallest, at most three times
    /// `longest`.
    static std::string message(std::size_t texts) {
        std::string content = "From x Mon Jan  1 10:00:00 2024\n";
        for (const char* const name : {"Subject: s", "From: f", "To: t"}) {
            const std::size_t length = std::min<std::size_t>(texts, longest);
            content += name + std::string(length, 'x') + "\n";
            texts -= length;
        }
        return content + "\nHello\n\n";
    }

    static constexpr std::int64_t longest = 1'000; // of what an entry keeps whole of each text
};

TEST_F(FullMemory, IsToldAndKeepsNothingElseFromBeingShown) {
    ASSERT_EQ(model_->collections->back().metadataBytes, MailCore::Limits::indexBytes);
    ASSERT_FALSE(model_->active()->indexLimitReached);
    EXPECT_EQ(*model_->error, std::nullopt);
    const URL late = letter("late.eml", "late");
    open({late});
    EXPECT_EQ(*model_->error, Texts::freeIndexMemory.english);
    EXPECT_THAT(openNames(), ElementsAre("full.mbox"));
    EXPECT_FALSE(*model_->busy);

    open({late, folder_.url("missing.eml"), folder_.url("full.mbox")});
    EXPECT_EQ(model_->error->value(), std::string(Texts::freeIndexMemory.english) + "\n\n" +
                                          std::string(Texts::freeIndexMemory.english));
    EXPECT_EQ(*model_->selectedCollection, idOf(0)) << "it is open, and takes no more memory";
    EXPECT_TRUE(model_->currentMessageReady());

    model_->closeCollection(idOf(0));
    open({late});
    EXPECT_EQ(*model_->error, std::nullopt);
    EXPECT_EQ(shownSubject(), "late");
}

class ErrorTexts : public ModelTest {
protected:
    ErrorTexts() : ModelTest("zh_TW") {}
};

TEST_F(ErrorTexts, SayOneSentenceInTheLanguageOfTheInterface) {
    using MailCore::MailError;
    const auto text = [this](const auto& error) { return model_->errorText(std::make_exception_ptr(error)); };
    open({folder_.write("b.eml", "")});
    EXPECT_EQ(**model_->error, "b.eml: 未能读取文件，请确认它是完整且受支持的邮件文件。");
    for (const auto which :
         {MailError::tooLarge, MailError::malformed, MailError::unsupported, MailError::tooMany,
          MailError::cancelled, MailError::sourceChanged, MailError::unsafeDestination}) {
        preferences_.setLanguage("zh-CN");
        const std::string chinese = text(MailError(which));
        preferences_.setLanguage("en-US");
        EXPECT_NE(text(MailError(which)), chinese);
        EXPECT_NE(text(MailError(which)), text(std::runtime_error("anything else")));
    }
}

} // namespace
} // namespace TesselMail::Testing
