// What happens when the world changes under work that is under way: files, collections, the program itself.
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/MailReader.h"
#include "tests/Application/ModelFixture.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr std::string_view missing =
    "The file is no longer there. It may have been moved, renamed or deleted.";
constexpr std::string_view sourceChanged = "The source file changed. Reopen it to update the message list.";

class Upheaval : public ModelTest {
protected:
    /// A few turns of the loop, so that work gets from its request to its queue.
    static void turn(int times = 20) {
        for (int number = 0; number < times; ++number) {
            g_main_context_iteration(nullptr, FALSE);
            g_usleep(200);
        }
    }
    /// Runs the loop until all that was asked for has ended, and the pause of a search has passed.
    void waitForQuiet() {
        bool paused = false;
        InterfaceThread::postAfter(std::chrono::milliseconds(200), [&] { paused = true; });
        waitUntil([&] { return paused; });
        waitUntil([this] { return !*model_->busy && !*model_->reading && !*model_->searching; });
        // The queue of reads is serial: what was asked before has ended when this has.
        bool written = false;
        write(settings_.url("mark"), written);
        waitUntil([&] { return written; });
    }
    static Task write(URL destination, bool& done) {
        co_await ArchiveWork::write(std::make_shared<const MailCore::Bytes>(), destination);
        done = true;
    }
    std::string parcel(std::size_t size) const {
        return Mail()
            .subject("parcel")
            .part(Mail().text("See below"))
            .part(Mail().file("notes.txt", "text/plain", std::string(size, 'n')))
            .part(Mail().file("inner.eml", "message/rfc822", Mail().subject("inner").text("Hi").string()))
            .string();
    }
};

struct FileChange {
    std::string_view name;
    std::function<void(const MailCore::Testing::TemporaryFolder&)> apply;
    std::string_view sentence; // of a read or an export
};

const FileChange fileChanges[] = {
    {"deleted", [](const auto& folder) { std::filesystem::remove(folder.path("box.mbox")); }, missing},
    {"replaced by one of the same length",
     [](const auto& folder) {
         std::filesystem::copy(folder.path("box.mbox"), folder.path("other"));
         std::filesystem::rename(folder.path("other"), folder.path("box.mbox"));
     },
     sourceChanged},
    {"truncated", [](const auto& folder) { std::filesystem::resize_file(folder.path("box.mbox"), 40); },
     sourceChanged},
    {"grown",
     [](const auto& folder) {
         std::ofstream(folder.path("box.mbox"), std::ios::app | std::ios::binary) << "From x\n\n";
     },
     sourceChanged},
};

TEST_F(Upheaval, ReadsSearchesAndExportsNothingOfAFileThatChanged) {
    for (const FileChange& change : fileChanges) {
        SCOPED_TRACE(change.name);
        open({folder_.write("box.mbox", mailbox({"one", "two"}))});
        ASSERT_EQ(shownSubject(), "one");
        change.apply(folder_);

        model_->select(1);
        settle();
        EXPECT_EQ(*model_->error, change.sentence);
        EXPECT_EQ(shownSubject(), "nothing");
        EXPECT_EQ(*model_->selectedEntry, 1);
        EXPECT_THAT(listed(), ElementsAre("two", "one"));

        model_->dismissError();
        panels_.destination = folder_.write("out.eml", "kept");
        model_->exportOriginal();
        waitUntil([this] { return model_->error->has_value(); });
        EXPECT_EQ(*model_->error, change.sentence);
        EXPECT_EQ(folder_.read("out.eml"), "kept");

        model_->dismissError();
        model_->setQuery("two");
        waitForQuiet();
        EXPECT_TRUE(model_->error->has_value() || listed() == std::vector<std::string>{"two"});

        model_->closeAll();
        std::filesystem::remove(folder_.path("box.mbox"));
        EXPECT_EQ(folder_.count(), 1U) << "nothing but the file that was there";
    }
}

TEST_F(Upheaval, ShowsNoMixtureOfAFileThatChangesWhileItIsRead) {
    const auto letterOf = [](char letter) {
        return Mail().subject("long").text(std::string(600'000, letter)).string();
    };
    const std::string before = letterOf('b');
    int refused = 0;
    int asked = 0;
    for (int change = 1; change == 1 || asked >= change; change += 1 + change / 8) {
        SCOPED_TRACE(change);
        open({folder_.write("a.eml", before)});
        const MailCore::SharedEntry entry = model_->entry();
        asked = 0;
        try {
            const auto message = MailCore::MailReader::message(*entry, [&] {
                if (++asked == change) {
                    folder_.write("a.eml", letterOf('a'));
                    folder_.touch("a.eml"); // however quick this was
                }
                return false;
            });
            EXPECT_EQ(message.plain.find('a'), std::string::npos);
            EXPECT_EQ(message.plain.size(), 600'000U);
        } catch (const MailCore::MailError& error) {
            EXPECT_EQ(error, MailCore::MailError(MailCore::MailError::sourceChanged));
            ++refused;
        }
        model_->closeAll();
    }
    EXPECT_GT(refused, 1) << "before the first bytes are read, and between them";
}

struct WorkUnderWay {
    std::string_view name;
    std::function<void()> begin;
};
struct Interruption {
    std::string_view name;
    std::function<void(AppModel&)> apply;
    std::size_t left; // collections of two
};

TEST_F(Upheaval, LeavesNoTraceOfWorkWhoseCollectionWasClosed) {
    const std::string large = mailbox(std::vector<std::string>(1'000, "one of many")) + parcel(1'000'000);
    const WorkUnderWay works[] = {
        {"indexing", [this] { model_->open({folder_.url("more.mbox")}); }},
        {"reading", [this] { model_->select(999); }},
        {"searching", [this] { model_->setQuery("no such text"); }},
        {"exporting", [this] { model_->exportOriginal(); }},
        {"everything",
         [this] {
             model_->exportOriginal();
             model_->setQuery("no such text");
             model_->open({folder_.url("more.mbox")});
             model_->select(999);
         }},
    };
    const Interruption interruptions[] = {
        {"it is closed", [this](AppModel& m) { m.closeCollection(idOf(0)); }, 1},
        {"all is closed", [](AppModel& m) { m.closeAll(); }, 0},
        {"a link arrives", [](AppModel& m) { m.open({URL::parse("mailto:ann").value_or(URL())}); }, 2},
    };
    folder_.write("more.mbox", large);
    const URL box = folder_.write("box.mbox", large);
    const URL other = letter("other.eml", "other");
    for (const WorkUnderWay& work : works) {
        for (const Interruption& interruption : interruptions) {
            SCOPED_TRACE(testing::Message() << work.name << ", then " << interruption.name);
            open({box, other});
            ASSERT_THAT(*model_->collections, SizeIs(2));
            panels_.destination = folder_.url("out.eml");
            work.begin();
            turn(2);
            interruption.apply(*model_);
            waitForQuiet();
            EXPECT_FALSE(*model_->error) << **model_->error;
            EXPECT_GE(model_->collections->size(), interruption.left);
            EXPECT_EQ(*model_->query, "");
            EXPECT_EQ(shownSubject(), interruption.left == 1 ? shownSubject() : "nothing");
            for (const auto& collection : *model_->collections) EXPECT_FALSE(collection.isIndexing);
            EXPECT_LE(folder_.count(), 4U) << "an export may have ended, but only whole";
            model_->closeAll();
            EXPECT_THAT(*model_->collections, SizeIs(0));
            std::filesystem::remove(folder_.path("out.eml"));
        }
    }
}

TEST_F(Upheaval, QuitsWhileAnythingIsUnderWay) {
    const URL box = folder_.write("box.mbox", mailbox(std::vector<std::string>(20'000, "one of many")));
    const URL letter = folder_.write("parcel.eml", parcel(1'000'000));
    const WorkUnderWay works[] = {
        {"opening", [&] { model_->open({box}); }},
        {"reading", [&] { model_->select(0); }},
        {"searching", [&] { model_->setQuery("no such text"); }},
        {"saving", [&] { model_->saveAttachment((*model_->message)->attachments.at(0).id); }},
        {"exporting", [&] { model_->exportOriginal(); }},
        {"reading an attached message",
         [&] { model_->previewAttachment((*model_->message)->attachments.at(1).id); }},
    };
    for (const WorkUnderWay& work : works) {
        for (const int turns : {0, 5}) {
            SCOPED_TRACE(testing::Message() << work.name << " after " << turns);
            open({letter});
            ASSERT_EQ(shownSubject(), "parcel");
            panels_.destination = folder_.url("out");
            work.begin();
            turn(turns);

            const std::weak_ptr<AppModel> left = model_;
            model_->closeAll();
            model_.reset();
            ArchiveWork::finish();
            waitUntil([&] { return left.expired(); });
            EXPECT_LE(folder_.count(), 3U) << "no unfinished file";
            std::filesystem::remove(folder_.path("out"));
            model_ = AppModel::create(preferences_, panels_, desktop_);
        }
    }
}

TEST_F(Upheaval, KeepsToTheBudgetOfAllThatIsOpen) {
    // Subjects of 1,024 characters are what an entry holds at most; a few archives of them fill the budget.
    std::string box;
    for (int number = 0; number < 30'000; ++number)
        box += "From x Mon Jan  1 10:00:00 2024\nSubject: " + std::string(2'000, 's') + "\n\nHi\n\n";
    const URL first = folder_.write("first.mbox", box);
    const URL second = letter("second.eml", "second");
    open({second});
    open({first});
    waitForQuiet();
    ASSERT_THAT(openNames(), ElementsAre("second.eml", "first.mbox"));
    EXPECT_LE(model_->collections->back().metadataBytes, 67'108'864);
    // What is open and unchanged is shown again however full the budget is.
    open({second});
    EXPECT_EQ(*model_->selectedCollection, idOf(0));
    EXPECT_FALSE(*model_->error);
}

} // namespace
} // namespace TesselMail::Testing
