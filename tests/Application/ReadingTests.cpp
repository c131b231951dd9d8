#include "tests/Application/ModelFixture.h"
#include "tests/Support/Case.h"
#include "tests/Support/OutlookBuilder.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using MailCore::Testing::OutlookMail;
using testing::ElementsAre;
using testing::SizeIs;

class Reading : public ModelTest {
protected:
    const MailCore::MailAttachment& attachment(std::size_t position = 0) const {
        return (*model_->message)->attachments.at(position);
    }
    /// Opens a letter with a text file and another letter attached.
    void openParcel() {
        open({folder_.write("parcel.eml", Mail()
                                              .subject("parcel")
                                              .part(Mail().text("See below"))
                                              .part(Mail().file("notes.txt", "text/plain", "Some notes"))
                                              .part(Mail().file("inner.eml", "message/rfc822", inner_))
                                              .string())});
    }

    const std::string inner_ = Mail().subject("inner").from("x@tessel.example").text("Inside").string();
};

TEST_F(Reading, ShowsOnlyTheLastOfSeveralQuickSelections) {
    std::vector<std::string> subjects;
    for (int number = 0; number < 10; ++number) subjects.push_back("message " + std::to_string(number));
    open({folder_.write("box.mbox", mailbox(subjects))});
    std::vector<std::string> shown;
    auto watching = model_->message.signalChanged().connect([&] { shown.push_back(shownSubject()); });
    for (AppModel::EntryID id = 1; id < 10; ++id) model_->select(id);
    settle();
    EXPECT_THAT(shown, ElementsAre("message 9"));
    watching.disconnect();
    EXPECT_TRUE(model_->currentMessageReady());
}

TEST_F(Reading, ReadsTheSameMessageAgainOnlyAfterAnError) {
    open({letter("a.eml", "a")});
    const auto request = *model_->readRequest;
    model_->select(0);
    EXPECT_EQ(*model_->readRequest, request);

    model_->readingViewFailed(MailCore::UUID::random(), Texts::viewStopped);
    EXPECT_EQ(*model_->error, std::nullopt);
    model_->readingViewFailed(*model_->selectionVersion, Texts::viewStopped);
    EXPECT_EQ(*model_->error, Texts::viewStopped.english);
    EXPECT_EQ(*model_->readFailure, (Failure{Texts::viewStopped, Remedy::tryAgain}));
    EXPECT_FALSE(model_->currentMessageReady());
    model_->dismissError();
    model_->select(0);
    EXPECT_NE(*model_->readRequest, request);
    settle();
    EXPECT_TRUE(model_->currentMessageReady());
}

TEST_F(Reading, ClearsThePaneAndSaysWhyWhenTheFileChanged) {
    open({folder_.write("box.mbox", mailbox({"one", "two"}))});
    folder_.touch("box.mbox");
    model_->select(1);
    settle();
    EXPECT_EQ(shownSubject(), "nothing");
    EXPECT_EQ(*model_->error, "The source file changed. Reopen it to update the message list.");
    EXPECT_EQ(*model_->selectedEntry, 1);
    EXPECT_THAT(listed(), ElementsAre("two", "one"));
}

TEST_F(Reading, GoesOnWhereItWasWhenAChangedSourceIsOpenedAgain) {
    const MailCore::Testing::Case<std::string, std::string_view> cases[] = {
        {"something arrived after it", mailbox({"one", "two", "three"}), "two"},
        {"something before it is gone", mailbox({"two"}), "two"},
        {"it is gone", mailbox({"one"}), "one"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string before = mailbox({"one", "two"});
        std::string now = c.given;
        for (std::string* const content : {&before, &now}) // the dates of `mailbox` tell places, not messages
            for (std::size_t at = 0; (at = content->find("Date: ", at)) != std::string::npos; ++at)
                content->replace(at + 6, content->find('\n', at) - at - 6, "1 Jan 2024 10:00:00 +0000");
        open({letter("other.eml", "other"), folder_.write("box.mbox", before)});
        model_->selectCollection(idOf(1));
        settle();
        folder_.write("box.mbox", now);
        folder_.touch("box.mbox");
        model_->select(1);
        settle();
        ASSERT_EQ(*model_->remedy, Remedy::reopen);
        ASSERT_EQ(*model_->readFailure, (Failure{Texts::sourceChanged, Remedy::reopen}));
        model_->dismissError(); // the pane offers it still
        model_->reopenSource();
        settle();
        EXPECT_EQ(shownSubject(), c.expected);
        EXPECT_EQ(*model_->readFailure, std::nullopt);
        EXPECT_EQ(*model_->remedy, Remedy::none);
        EXPECT_FALSE(*model_->error) << **model_->error;
        EXPECT_THAT(*model_->collections, SizeIs(2));
        model_->closeAll();
    }
}

TEST_F(Reading, OffersToOpenASourceAgainThatChangedUnderASearchOrAnExport) {
    open({folder_.write("box.mbox", mailbox({"one", "two"})), letter("other.eml", "other")});
    folder_.touch("box.mbox");
    model_->setQuery("Hello");
    waitUntil([this] { return model_->error->has_value(); });
    EXPECT_EQ(*model_->remedy, Remedy::reopen);
    model_->reopenSource();
    settle();
    EXPECT_EQ(*model_->remedy, Remedy::none);
    EXPECT_EQ(shownSubject(), "one");

    folder_.touch("box.mbox");
    panels_.destination = folder_.url("out.eml");
    model_->exportOriginal();
    waitUntil([this] { return model_->error->has_value(); });
    EXPECT_EQ(*model_->remedy, Remedy::reopen);
    const auto box = *model_->selectedCollection;
    // What is opened again is what failed, not what is looked at.
    model_->selectCollection(model_->collections->back().id == box ? idOf(0)
                                                                   : model_->collections->back().id);
    settle();
    ASSERT_TRUE(model_->error->has_value());
    const auto former = *box;
    model_->reopenSource();
    settle();
    for (const auto& collection : *model_->collections) EXPECT_FALSE(collection.id == former);
}

TEST_F(Reading, SaysThatAFileIsGoneAndReadsItWhenItIsBack) {
    open({letter("a.eml", "a"), letter("b.eml", "b")});
    std::filesystem::rename(folder_.path("b.eml"), folder_.path("elsewhere"));
    model_->selectCollection(idOf(1));
    settle();
    EXPECT_EQ(*model_->error, Texts::fileMissing.english);
    EXPECT_EQ(*model_->readFailure, (Failure{Texts::fileMissing, Remedy::tryAgain}));
    std::filesystem::rename(folder_.path("elsewhere"), folder_.path("b.eml"));
    model_->dismissError();
    model_->select(0);
    settle();
    // Moving a file counts as changing it.
    EXPECT_TRUE(shownSubject() == "b" || *model_->remedy == Remedy::reopen);
}

TEST_F(Reading, LeavesAMessageAloneThatIsTooLarge) {
    std::string content = mailbox({"small"}) + mailbox({"large"});
    content += std::string(34'000'000, 'x') + "\n";
    open({folder_.write("box.mbox", content)});
    model_->select(1);
    EXPECT_FALSE(*model_->reading);
    EXPECT_TRUE(model_->selectionTooLarge());
    EXPECT_TRUE(model_->canExportOriginal());
    EXPECT_EQ(*model_->error, std::nullopt);
    EXPECT_EQ(shownSubject(), "nothing");
}

TEST_F(Reading, OpensAnAttachedMessageOnceAndInMemory) {
    openParcel();
    const auto id = attachment(1).id;
    model_->previewAttachment(id);
    waitUntil([this] { return shownSubject() == "inner"; });
    settle();
    EXPECT_THAT(*model_->collections, SizeIs(2));
    EXPECT_EQ(model_->active()->kind, "Message");
    EXPECT_TRUE(model_->currentMessageReady());
    const auto made = **model_->selectedCollection;

    panels_.destination = folder_.url("out.eml");
    ASSERT_TRUE(model_->canExportOriginal());
    model_->exportOriginal();
    waitUntil([this] { return folder_.read("out.eml") == inner_; });
    EXPECT_THAT(panels_.proposedNames, ElementsAre("inner.eml"));

    const auto parcel = idOf(0);
    model_->selectCollection(parcel);
    settle();
    model_->previewAttachment(attachment(1).id);
    settle();
    EXPECT_EQ(*model_->selectedCollection, made);
    EXPECT_THAT(*model_->collections, SizeIs(2));

    model_->closeCollection(made);
    settle();
    model_->previewAttachment(attachment(1).id);
    waitUntil([this] { return shownSubject() == "inner"; });
    EXPECT_NE(*model_->selectedCollection, made);
}

TEST_F(Reading, WritesAttachmentsAndOriginalsButNeverOverASource) {
    openParcel();
    std::vector<URL> told;
    model_->signalSaved().connect([&told](const URL& file) { told.push_back(file); });
    panels_.destination = folder_.url("saved.txt");
    model_->saveAttachment(attachment(0).id);
    waitUntil([&] { return !told.empty(); });
    EXPECT_EQ(folder_.read("saved.txt"), "Some notes");
    EXPECT_THAT(panels_.proposedNames, ElementsAre("notes.txt"));

    const std::string original = folder_.read("parcel.eml");
    panels_.destination = folder_.url("copy.eml");
    model_->exportOriginal();
    waitUntil([&] { return told.size() == 2; });
    EXPECT_EQ(folder_.read("copy.eml"), original);
    EXPECT_THAT(told, ElementsAre(folder_.url("saved.txt"), folder_.url("copy.eml")));

    panels_.destination = folder_.url("parcel.eml");
    for (const auto& write : {std::function<void()>([this] { model_->exportOriginal(); }),
                              std::function<void()>([this] { model_->saveAttachment(attachment(0).id); })}) {
        model_->dismissError();
        write();
        waitUntil([this] { return model_->error->has_value(); });
        EXPECT_EQ(*model_->error, "Choose another destination to keep open source files unchanged.");
    }
    EXPECT_EQ(folder_.read("parcel.eml"), original);

    panels_.destination.reset();
    model_->dismissError();
    model_->exportOriginal();
    settle();
    EXPECT_EQ(*model_->error, std::nullopt);
    EXPECT_EQ(told.size(), 2U) << "nothing more was saved";
}

TEST_F(Reading, ProposesANameThatSaysWhatTheOriginalIs) {
    struct Case {
        std::string_view name;
        URL source;
        std::string_view proposed;
    };
    const std::string outlook = OutlookMail().subject("Minutes").plain("Hello").string();
    const Case cases[] = {
        {"an Outlook message", folder_.write("Meeting.msg", outlook), "Meeting.msg"},
        {"an Outlook template", folder_.write("Form.OFT", outlook), "Form.OFT"},
        {"a letter", letter("a.eml", "Minutes"), "Minutes.eml"},
        {"a message of an archive", folder_.write("box.mbox", mailbox({"One: two/three"})),
         "One_ two_three.eml"},
        {"a message without a subject", folder_.write("b.eml", "From: a@b\n\nHello"), "Message.eml"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        open({c.source});
        panels_.proposedNames.clear();
        model_->exportOriginal();
        waitUntil([this] { return !panels_.proposedNames.empty(); });
        EXPECT_THAT(panels_.proposedNames, ElementsAre(c.proposed));
        model_->closeAll();
    }
    // What it is called it is.
    open({folder_.url("Meeting.msg")});
    panels_.destination = folder_.url("out.msg");
    model_->exportOriginal();
    waitUntil([&] { return folder_.read("out.msg") == outlook; });
}

TEST_F(Reading, KeepsAtMostTwentyMessagesInMemory) {
    Mail mail;
    mail.subject("many").part(Mail().text("See below"));
    for (int number = 0; number < 21; ++number) mail.part(Mail().file("inner.eml", "message/rfc822", inner_));
    open({folder_.write("many.eml", mail.string())});
    for (std::size_t number = 0; number < 21; ++number) {
        ASSERT_EQ(shownSubject(), "many");
        model_->previewAttachment(attachment(number).id);
        if (number == 20) break;
        waitUntil([this] { return shownSubject() == "inner"; });
        model_->selectCollection(idOf(0));
        settle();
    }
    EXPECT_EQ(*model_->error, "This file contains more messages or parts than can be opened safely.");
    EXPECT_THAT(*model_->collections, SizeIs(21));
}

TEST_F(Reading, TellsViewsOfOneChangeWhenTheStateIsWhole) {
    open({letter("a.eml", "a"), letter("b.eml", "b")});
    // However many fields an operation changes, no listener sees them half changed.
    const auto check = [this] {
        EXPECT_EQ(model_->active() != nullptr, model_->selectedCollection->has_value());
        EXPECT_TRUE(model_->active() || !*model_->message);
    };
    model_->collections.signalChanged().connect(check);
    model_->selectedCollection.signalChanged().connect(check);
    model_->selectedEntry.signalChanged().connect(check);
    model_->message.signalChanged().connect(check);
    model_->closeCollection(idOf(0));
    settle();
    model_->closeAll();
}

} // namespace
} // namespace TesselMail::Testing
