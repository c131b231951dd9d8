#pragma once

#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/UUID.h"
#include "TesselMail/Model/ArchiveWork.h"
#include "TesselMail/Model/Published.h"
#include "TesselMail/Model/ScopedMailFile.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace TesselMail {

/// What is open: the collections with the right to read them, the message last selected in each, and what
/// attached messages hold in memory. All of that goes with its collection. The collections share one budget
/// of memory for their indexes. Its operations are called inside a Changing. Interface thread only.
class OpenSources {
public:
    using CollectionID = MailCore::UUID;
    using EntryID = std::int64_t;
    using SharedAttachment = std::shared_ptr<const MailCore::MailAttachment>;
    template <typename Value>
    using Field = Published<Value, OpenSources>;

    /// Where an attachment was found. Its own identity is a new one each time its message is read.
    struct AttachmentPlace {
        CollectionID collection;
        EntryID entry = 0;
        std::size_t position = 0;
        bool operator==(const AttachmentPlace&) const = default;
    };

    /// An attached message opened from memory.
    struct MemoryMessage {
        ArchiveWork::ReadMessage content;
        std::shared_ptr<const MailCore::Bytes> original; // null when its producer had decoded it
        AttachmentPlace place;
    };

    /// `changes` outlives it.
    explicit OpenSources(Changes& changes) : collections(changes) {}
    OpenSources(const OpenSources&) = delete;
    OpenSources& operator=(const OpenSources&) = delete;

    Field<std::vector<MailCore::MailCollection>> collections; // in opening order, each URL once

    /// The collection, or null.
    const MailCore::MailCollection* find(CollectionID id) const noexcept;
    const MailCore::MailCollection* find(const MailCore::URL& url) const noexcept;
    /// The right to read what is open, which work that reads it holds on to; null when it is not.
    MailFileScope scopeOf(const MailCore::URL& url) const;
    std::vector<MailFileScope> scopes() const;

    // Indexing

    /// The collection that `url` becomes, as it is presumed to be until the engine has looked at it. It is
    /// listed when its first entries arrive.
    static MailCore::MailCollection placeholder(const MailCore::URL& url);
    /// The bytes of the budget that indexing `url` may use: what all others leave. Below 1 there are none.
    std::int64_t indexRoom(const MailCore::URL& url) const;
    /// `placeholder` is being indexed from now on, until `finish` or `interrupt`.
    void begin(CollectionID placeholder) { indexing_ = placeholder; }
    bool isIndexing(CollectionID id) const noexcept { return indexing_ == id; }
    /// Adds entries that have arrived; with the first ones it takes the place of an older copy of its source.
    /// How many it has now.
    std::size_t add(const MailCore::EntryList& entries, const MailCore::MailCollection& placeholder,
                    const MailFileScope& scope);
    /// Indexing has ended with `result`, whose id is the placeholder's. The entries that arrive only now.
    MailCore::EntryList finish(MailCore::MailCollection result, const MailFileScope& scope);
    /// Indexing, if any is under way, has ended early: what has arrived stays listed and is marked as
    /// interrupted.
    void interrupt();

    // Selections

    void remember(CollectionID collection, EntryID entry) { selections_[collection] = entry; }
    /// The entry last selected in the collection.
    std::optional<EntryID> remembered(CollectionID collection) const;

    // Attached messages

    /// Opens the message of `attachment` as a collection of its own.
    CollectionID add(const SharedAttachment& attachment, AttachmentPlace place,
                     ArchiveWork::ReadMessage content);
    /// Whether no further attached message may be opened.
    bool memoryFull() const noexcept;
    /// The message a collection was made of; null when it was not made from memory.
    const MemoryMessage* memory(CollectionID id) const noexcept;
    /// The collection made of the attachment that was found there.
    std::optional<CollectionID> openedFrom(const AttachmentPlace& place) const;

    // Closing

    /// Closes an open collection. The one that takes its place: the next one, else the last, if any is left.
    std::optional<CollectionID> close(CollectionID id);
    void closeAll();
    /// Lets go of what belongs to no open collection any more.
    void releaseUnusedScopes();

private:
    MailCore::MailCollection* edit(CollectionID id);
    void replace(MailCore::MailCollection collection, const MailFileScope& scope);
    void remove(std::size_t position);

    std::map<MailCore::URL, MailFileScope> scopes_;
    std::map<CollectionID, EntryID> selections_;
    std::map<CollectionID, MemoryMessage> memory_;
    std::optional<CollectionID> indexing_; // the placeholder, listed or not
};

} // namespace TesselMail
