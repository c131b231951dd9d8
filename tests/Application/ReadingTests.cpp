#include "tests/Application/ModelFixture.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

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

    model_->readingViewFailed(MailCore::UUID::random(), "about something older");
    EXPECT_EQ(*model_->error, std::nullopt);
    model_->readingViewFailed(*model_->selectionVersion, "The view failed.");
    EXPECT_EQ(*model_->error, "The view failed.");
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
    panels_.destination = folder_.url("saved.txt");
    model_->saveAttachment(attachment(0).id);
    waitUntil([this] { return folder_.read("saved.txt") == "Some notes"; });
    EXPECT_THAT(panels_.proposedNames, ElementsAre("notes.txt"));

    const std::string original = folder_.read("parcel.eml");
    panels_.destination = folder_.url("copy.eml");
    model_->exportOriginal();
    waitUntil([&] { return folder_.read("copy.eml") == original; });

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
