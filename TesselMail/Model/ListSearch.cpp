#include "TesselMail/Model/ListSearch.h"

#include "MailCore/Platform/Text.h"
#include "TesselMail/Platform/InterfaceThread.h"

#include <memory>
#include <utility>

namespace TesselMail {
namespace {

using MailCore::EntryList;
using MailCore::MailCollection;

constexpr std::chrono::milliseconds typingPause{180};

} // namespace

ListSearch::ListSearch(Changes& changes, const OpenSources& sources, Failed failed)
    : changes_(changes), filteredEntries(changes, std::make_shared<const EntryList>()), sources_(sources),
      failed_(std::move(failed)) {}

ListSearch::~ListSearch() {
    if (token_) token_->stop();
}

void ListSearch::list(std::optional<CollectionID> collection) {
    const Changing changing(changes_);
    collection_ = collection;
    query.set("");
    schedule(Kind::restart);
}

void ListSearch::setQuery(std::string text) {
    if (*query == text) return;
    const Changing changing(changes_);
    query.set(std::move(text));
    schedule(Kind::restart);
}

void ListSearch::setNewestFirst(bool first) {
    if (*newestFirst == first) return;
    const Changing changing(changes_);
    newestFirst.set(first);
    schedule(Kind::restart);
}

void ListSearch::refresh() {
    const Changing changing(changes_);
    if (pending_)
        refreshWanted_ = true;
    else
        schedule(Kind::refresh);
}

ArchiveWork::SharedList ListSearch::entries() const {
    if (ordered_ == collection_) return *filteredEntries;
    const MailCollection* const stored = collection_ ? sources_.find(*collection_) : nullptr;
    return std::make_shared<const EntryList>(stored ? stored->entries : EntryList());
}

void ListSearch::schedule(Kind kind) {
    if (token_) token_->stop();
    pending_ = false;
    refreshWanted_ = false;
    const std::string text(MailCore::Text::trimmed(*query));
    if (!collection_) {
        publishList(std::make_shared<const EntryList>());
        ordered_.reset();
        searchUnreadable.set(0);
        searching.set(false);
        displayedQuery_.clear();
        return;
    }
    if (kind == Kind::restart) searchUnreadable.set(0);
    if (text != displayedQuery_) { // another question: the answers to the former one go at once
        publishList(std::make_shared<const EntryList>());
        ordered_ = collection_;
        displayedQuery_ = text;
    }
    searching.set(!text.empty());
    token_ = std::make_shared<Cancellation>();
    pending_ = true;
    search(*this, kind, token_, *collection_, text);
}

// A newer search and the end of `self` both stop the token, so it is checked after every wait.
Task ListSearch::search(ListSearch& self, Kind kind, CancellationToken token, CollectionID collection,
                        std::string text) {
    if (kind == Kind::restart) co_await InterfaceThread::pause(typingPause);
    if (token->isStopped()) co_return;
    const MailCollection* const searched = self.sources_.find(collection);
    EntryList entries = searched ? searched->entries : EntryList();
    // Access to all that is open lasts while messages are read.
    auto results = co_await ArchiveWork::search(std::move(entries), std::move(text), *self.newestFirst,
                                                self.sources_.scopes(), token)
                       .outcome();
    if (token->isStopped()) co_return;
    const Changing changing(self.changes_);
    if (results) {
        self.publish(std::move(results).take(), collection);
    } else {
        self.pending_ = false;
        self.searching.set(false);
        self.failed_(results.error());
    }
}

void ListSearch::publish(ArchiveWork::SearchResults results, CollectionID collection) {
    publishList(std::move(results.entries));
    ordered_ = collection;
    searchUnreadable.set(results.unreadable);
    searching.set(false);
    pending_ = false;
    if (refreshWanted_) schedule(Kind::refresh);
}

// The list shown so far is released on another thread, once no view shows it any more.
void ListSearch::publishList(ArchiveWork::SharedList list) {
    ArchiveWork::SharedList former = std::exchange(filteredEntries.edit(), std::move(list));
    if (!former->empty()) ArchiveWork::release(std::move(former));
}

} // namespace TesselMail
