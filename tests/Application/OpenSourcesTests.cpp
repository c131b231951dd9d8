// What is kept for the sources that are open, and what goes when they are closed.
#include "TesselMail/Model/OpenSources.h"

#include "MailCore/Model/Limits.h"
#include "tests/Application/ModelFixture.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using MailCore::MailCollection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Sources : public MainLoopTest {
protected:
    using CollectionID = OpenSources::CollectionID;

    ~Sources() override { finishWork(); }

    static URL url(const std::string& name) { return URL::file("/nowhere/" + name); }
    static MailFileScope scope(const URL& url) {
        return std::make_shared<const ScopedMailFile>(ScopedMailFile{url});
    }
    /// Entries 0 to `count`.
    static MailCore::EntryList entries(std::int64_t count) {
        MailCore::EntryList list;
        for (std::int64_t id = 0; id < count; ++id) {
            MailCore::MessageEntry entry;
            entry.id = id;
            list.push_back(std::make_shared<const MailCore::MessageEntry>(std::move(entry)));
        }
        return list;
    }
    /// Opens a source whose index takes `bytes` of the budget.
    CollectionID open(const std::string& name, std::int64_t bytes = 0) {
        MailCollection collection = OpenSources::placeholder(url(name));
        collection.entries = entries(2);
        collection.metadataBytes = bytes;
        const CollectionID id = collection.id;
        sources_.begin(id);
        sources_.finish(std::move(collection), scope(url(name)));
        return id;
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const MailCollection& collection : *sources_.collections)
            all.push_back(collection.url.lastPathComponent());
        return all;
    }
    OpenSources::SharedAttachment attachment(bool decoded = false) const {
        MailCore::MailAttachment made;
        made.name = "../inner.eml";
        made.bytes = Mail().subject("inner").text("Hello").bytes();
        if (decoded) made.embedded.emplace_back();
        return std::make_shared<const MailCore::MailAttachment>(std::move(made));
    }
    CollectionID addMessage(OpenSources::AttachmentPlace place, bool decoded = false) {
        MailCore::MailMessage message;
        message.subject = "inner";
        return sources_.add(attachment(decoded), place,
                            {std::make_shared<const MailCore::MailMessage>(std::move(message)), nullptr});
    }

    Changes changes_;
    OpenSources sources_{changes_};
};

TEST_F(Sources, ShareOneBudgetAmongAllThatIsOpen) {
    constexpr std::int64_t budget = MailCore::Limits::indexBytes;
    EXPECT_EQ(sources_.indexRoom(url("a.mbox")), budget);
    const auto first = open("a.mbox", budget - 1'000);
    open("b.mbox", 1'000);
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), 0);
    EXPECT_EQ(sources_.indexRoom(url("b.mbox")), 1'000) << "its own index gives way to the new one";

    open("b.mbox", 400);
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), 600) << "the older copy counts no longer";
    sources_.close(first);
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), budget - 400);

    // What arrives in batches counts while it arrives.
    const MailCollection growing = OpenSources::placeholder(url("d.mbox"));
    const auto batch = entries(3);
    sources_.begin(growing.id);
    sources_.add(batch, growing, scope(growing.url));
    sources_.add(batch, growing, scope(growing.url));
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), budget - 400 - 6 * batch.front()->metadataBytes());
    sources_.interrupt();
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), budget - 400 - 6 * batch.front()->metadataBytes());
    sources_.closeAll();
    EXPECT_EQ(sources_.indexRoom(url("c.mbox")), budget);
}

TEST_F(Sources, KeepTheRightToReadWhatIsOpenAndNoOther) {
    const auto first = open("a.eml");
    const auto second = open("b.eml");
    const std::weak_ptr<const ScopedMailFile> firstScope = sources_.scopeOf(url("a.eml"));
    const std::weak_ptr<const ScopedMailFile> secondScope = sources_.scopeOf(url("b.eml"));
    EXPECT_EQ(sources_.scopeOf(url("c.eml")), nullptr);
    sources_.releaseUnusedScopes();
    EXPECT_THAT(sources_.scopes(), SizeIs(2));

    sources_.close(first);
    EXPECT_TRUE(firstScope.expired());
    ASSERT_FALSE(secondScope.expired());
    EXPECT_THAT(sources_.scopes(), ElementsAre(secondScope.lock()));

    // Opened again by the right that is there, it is kept across the change of collections.
    MailCollection again = OpenSources::placeholder(url("b.eml"));
    sources_.begin(again.id);
    sources_.finish(std::move(again), secondScope.lock());
    EXPECT_EQ(sources_.find(second), nullptr);
    sources_.releaseUnusedScopes();
    EXPECT_FALSE(secondScope.expired());
    {
        const MailFileScope work = sources_.scopeOf(url("b.eml"));
        sources_.closeAll();
        EXPECT_THAT(sources_.scopes(), IsEmpty());
        EXPECT_FALSE(secondScope.expired()) << "while work goes on";
    }
    EXPECT_TRUE(secondScope.expired());
}

TEST_F(Sources, ListASourceOnceHoweverItsEntriesArrive) {
    open("a.mbox");
    const auto old = open("b.mbox");
    const MailCollection placeholder = OpenSources::placeholder(url("b.mbox"));
    sources_.begin(placeholder.id);
    EXPECT_NE(sources_.find(old), nullptr) << "until there is something to take its place";
    EXPECT_EQ(sources_.find(placeholder.id), nullptr);
    EXPECT_EQ(sources_.add(entries(2), placeholder, scope(placeholder.url)), 2U);
    EXPECT_EQ(sources_.find(old), nullptr);
    EXPECT_EQ(sources_.add(entries(1), placeholder, scope(placeholder.url)), 3U);
    EXPECT_THAT(names(), ElementsAre("a.mbox", "b.mbox"));
    EXPECT_TRUE(sources_.find(placeholder.id)->isIndexing);

    MailCollection result = placeholder;
    result.kind = "MBOX";
    result.indexLimitReached = true;
    result.entries = entries(3);
    EXPECT_THAT(sources_.finish(result, scope(placeholder.url)), IsEmpty()) << "they have arrived before";
    const MailCollection& listed = *sources_.find(placeholder.id);
    EXPECT_THAT(listed.entries, SizeIs(3));
    EXPECT_TRUE(listed.indexLimitReached);
    EXPECT_FALSE(listed.isIndexing || listed.indexInterrupted);
    sources_.interrupt();
    EXPECT_FALSE(listed.indexInterrupted) << "it is complete";
    EXPECT_THAT(names(), ElementsAre("a.mbox", "b.mbox"));
}

TEST_F(Sources, MarkOnlyWhatIsBeingIndexedAsInterrupted) {
    const auto complete = open("a.mbox");
    const MailCollection placeholder = OpenSources::placeholder(url("b.mbox"));
    sources_.begin(placeholder.id);
    EXPECT_TRUE(sources_.isIndexing(placeholder.id));
    EXPECT_FALSE(sources_.isIndexing(complete));
    sources_.add(entries(1), placeholder, scope(placeholder.url));
    sources_.interrupt();
    EXPECT_TRUE(sources_.find(placeholder.id)->indexInterrupted);
    EXPECT_FALSE(sources_.find(placeholder.id)->isIndexing);
    EXPECT_FALSE(sources_.isIndexing(placeholder.id));
    EXPECT_FALSE(sources_.find(complete)->indexInterrupted);
    // One that nothing has arrived of is not listed.
    sources_.begin(OpenSources::placeholder(url("c.mbox")).id);
    sources_.interrupt();
    EXPECT_THAT(names(), ElementsAre("a.mbox", "b.mbox"));
}

TEST_F(Sources, PresumeAKindFromTheName) {
    const MailCore::Testing::TemporaryFolder folder;
    folder.write("Folder.eml/cur/1", "");
    struct Case {
        URL url;
        std::string_view kind;
    };
    const Case cases[] = {{url("a.MBX"), "MBOX"},  {url("a.mbo"), "MBOX"},
                          {url("a.emlx"), "EMLX"}, {url("Mail"), "Maildir"},
                          {url("a.msg"), "MSG"},   {folder.url("Folder.eml"), "Maildir"}};
    for (const Case& c : cases) EXPECT_EQ(OpenSources::placeholder(c.url).kind, c.kind) << c.url.text();
}

TEST_F(Sources, NameTheNeighbourOfWhatIsClosed) {
    const auto first = open("a.eml");
    const auto second = open("b.eml");
    const auto third = open("c.eml");
    EXPECT_EQ(sources_.close(second), third);
    EXPECT_EQ(sources_.close(second), std::nullopt) << "it is gone";
    EXPECT_EQ(sources_.close(third), first);
    EXPECT_EQ(sources_.close(first), std::nullopt);
}

TEST_F(Sources, RememberASelectionAsLongAsItsCollectionIsOpen) {
    const auto first = open("a.mbox");
    const auto second = open("b.mbox");
    EXPECT_EQ(sources_.remembered(first), std::nullopt);
    sources_.remember(first, 1);
    sources_.remember(second, 0);
    sources_.remember(second, 1);
    sources_.close(first);
    EXPECT_EQ(sources_.remembered(first), std::nullopt);
    EXPECT_EQ(sources_.remembered(second), 1);
    open("b.mbox");
    sources_.releaseUnusedScopes();
    EXPECT_EQ(sources_.remembered(second), std::nullopt) << "another index has other entries";
}

TEST_F(Sources, HoldAttachedMessagesInMemoryWhileTheyAreOpen) {
    const auto mail = open("parcel.eml");
    const auto plain = addMessage({mail, 0, 0});
    const auto decoded = addMessage({mail, 0, 1}, true);
    EXPECT_EQ(sources_.openedFrom({mail, 0, 0}), plain);
    EXPECT_EQ(sources_.openedFrom({mail, 0, 1}), decoded);
    EXPECT_EQ(sources_.openedFrom({mail, 1, 0}), std::nullopt);
    EXPECT_EQ(sources_.openedFrom({plain, 0, 0}), std::nullopt);
    EXPECT_EQ(sources_.memory(mail), nullptr) << "it is in a file";
    ASSERT_NE(sources_.memory(plain), nullptr);
    EXPECT_EQ(*sources_.memory(plain)->original, attachment()->bytes);
    EXPECT_EQ(sources_.memory(decoded)->original, nullptr) << "its bytes are not those of a message";

    const MailCollection& collection = *sources_.find(plain);
    EXPECT_EQ(collection.kind, "Message");
    EXPECT_EQ(collection.metadataBytes, 0);
    EXPECT_FALSE(collection.url.isFile());
    EXPECT_NE(collection.url, sources_.find(decoded)->url) << "two of the same name are two sources";
    ASSERT_THAT(collection.entries, SizeIs(1));
    EXPECT_EQ(collection.entries[0]->subject, "inner");

    const std::weak_ptr<const MailCore::Bytes> bytes = sources_.memory(plain)->original;
    sources_.close(plain);
    EXPECT_TRUE(bytes.expired());
    EXPECT_EQ(sources_.openedFrom({mail, 0, 0}), std::nullopt) << "it can be opened again";
    sources_.releaseUnusedScopes();
    EXPECT_NE(sources_.memory(decoded), nullptr);
}

TEST_F(Sources, TakeTwentyMessagesIntoMemory) {
    const auto mail = open("parcel.eml");
    CollectionID last = mail;
    for (std::size_t position = 0; position < 20; ++position) {
        EXPECT_FALSE(sources_.memoryFull());
        last = addMessage({mail, 0, position});
    }
    EXPECT_TRUE(sources_.memoryFull());
    sources_.close(mail);
    EXPECT_TRUE(sources_.memoryFull()) << "files are not in memory";
    sources_.close(last);
    EXPECT_FALSE(sources_.memoryFull());
}

} // namespace
} // namespace TesselMail::Testing
