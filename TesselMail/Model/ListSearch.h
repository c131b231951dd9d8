#pragma once

#include "TesselMail/Model/ArchiveWork.h"
#include "TesselMail/Model/Cancellation.h"
#include "TesselMail/Model/OpenSources.h"
#include "TesselMail/Model/Published.h"
#include "TesselMail/Platform/Task.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>

namespace TesselMail {

/// The message list: the entries of one collection that match a text, in order of display. One search at a
/// time makes it; a newer question takes the place of the search under way. Interface thread only.
class ListSearch {
public:
    using CollectionID = OpenSources::CollectionID;
    using Failed = std::function<void(const std::exception_ptr& error)>;
    template <typename Value>
    using Field = Published<Value, ListSearch>;

    /// `changes` and `sources` outlive it. `failed` is told of a search that ended with an error, inside a
    /// Changing; the list stays as it is then.
    ListSearch(Changes& changes, const OpenSources& sources, Failed failed);
    ListSearch(const ListSearch&) = delete;
    ListSearch& operator=(const ListSearch&) = delete;
    ~ListSearch();

private:
    Changes& changes_; // before the fields, which refer to it

public:
    Field<std::string> query{changes_}; // the search text as typed
    Field<bool> newestFirst{changes_, true};
    Field<std::int64_t> searchUnreadable{changes_, 0};        // messages the last search could not read
    Field<bool> searching{changes_, false};                   // for a text
    Field<ArchiveWork::SharedList> filteredEntries{changes_}; // never null

    /// Lists another collection, or nothing, without a text to look for.
    void list(std::optional<CollectionID> collection);
    /// Looks for another text, once typing has paused.
    void setQuery(std::string text);
    void setNewestFirst(bool first);
    /// The collection listed has other entries than before. What is listed stays until the new list is there.
    /// However often this is asked while a search is pending, one more follows it.
    void refresh();
    /// Whether a search is pending or under way: the list is no answer yet.
    bool isPending() const noexcept { return pending_; }
    /// What to show: the entries in order, or as the collection holds them until they have been ordered.
    ArchiveWork::SharedList entries() const;

private:
    enum class Kind { restart, refresh };

    static Task search(ListSearch& self, Kind kind, CancellationToken token, CollectionID collection,
                       std::string text);
    void schedule(Kind kind);
    void publishList(ArchiveWork::SharedList list);
    void publish(ArchiveWork::SearchResults results, CollectionID collection);

    const OpenSources& sources_;
    const Failed failed_;
    std::optional<CollectionID> collection_; // listed
    std::optional<CollectionID> ordered_;    // whose entries filteredEntries holds
    std::string displayedQuery_;             // the trimmed text that filteredEntries was last started for
    CancellationToken token_;                // of the search that is pending or under way
    bool pending_ = false;
    bool refreshWanted_ = false; // entries arrived while one was pending
};

} // namespace TesselMail
