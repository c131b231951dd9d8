// What the message list shows: the messages that match the search text, in order.
#include "TesselMail/Model/AppModel.h"

#include "MailCore/Platform/Text.h"
#include "TesselMail/Platform/InterfaceThread.h"

#include <utility>

namespace TesselMail {

using MailCore::MailCollection;

namespace {

constexpr std::chrono::milliseconds typingPause{180};

} // namespace

ArchiveWork::SharedList AppModel::entries() const {
    if (orderedCollection_ == *selectedCollection) return *filteredEntries;
    const MailCollection* const collection = active();
    return collection ? std::make_shared<const MailCore::EntryList>(collection->entries)
                      : std::make_shared<const MailCore::EntryList>();
}

bool AppModel::listPending() const noexcept {
    const MailCollection* const collection = active();
    return searchPending_ || (collection && collection->isIndexing);
}

void AppModel::setQuery(std::string text) {
    const Changing changing(changes_);
    if (*query == text) return;
    query.set(std::move(text));
    scheduleSearch(Search::restart);
}

void AppModel::setNewestFirst(bool first) {
    const Changing changing(changes_);
    if (*newestFirst == first) return;
    newestFirst.set(first);
    scheduleSearch(Search::restart);
}

void AppModel::scheduleSearch(Search kind) {
    if (kind == Search::refresh && searchPending_) {
        searchRefresh_ = true;
        return;
    }
    if (searchToken_) searchToken_->stop();
    searchPending_ = false;
    searchRefresh_ = false;
    const std::string text(MailCore::Text::trimmed(*query));
    if (!*selectedCollection) {
        publishList(std::make_shared<const MailCore::EntryList>());
        orderedCollection_.reset();
        searchUnreadable.set(0);
        searching.set(false);
        displayedQuery_.clear();
        return;
    }
    if (kind == Search::restart) searchUnreadable.set(0);
    if (text != displayedQuery_) { // another question: the answers to the former one go at once
        publishList(std::make_shared<const MailCore::EntryList>());
        orderedCollection_ = *selectedCollection;
        displayedQuery_ = text;
    }
    searching.set(!text.empty());
    searchToken_ = std::make_shared<Cancellation>();
    searchPending_ = true;
    search(shared_from_this(), kind, searchToken_, **selectedCollection, text);
}

Task AppModel::search(std::shared_ptr<AppModel> self, Search kind, CancellationToken token,
                      CollectionID collection, std::string text) {
    if (kind == Search::restart) co_await InterfaceThread::pause(typingPause);
    if (token->isStopped() || *self->selectedCollection != collection) co_return;
    const MailCollection* const searched = self->active();
    MailCore::EntryList entries = searched ? searched->entries : MailCore::EntryList();
    std::vector<MailFileScope> scopes; // of all that is open: access lasts while messages are read
    for (const auto& [url, scope] : self->scopes_) scopes.push_back(scope);

    auto results = co_await ArchiveWork::search(std::move(entries), std::move(text), *self->newestFirst,
                                                std::move(scopes), token)
                       .outcome();
    if (token->isStopped()) co_return;
    const Changing changing(self->changes_);
    if (!results) {
        self->searchPending_ = false;
        self->searching.set(false);
        self->fail(results.error());
    } else if (*self->selectedCollection == collection) {
        self->publishResults(std::move(results).take(), collection);
    }
}

void AppModel::publishResults(ArchiveWork::SearchResults results, CollectionID collection) {
    publishList(std::move(results.entries));
    orderedCollection_ = collection;
    searchUnreadable.set(results.unreadable);
    searching.set(false);
    searchPending_ = false;
    if (searchRefresh_) scheduleSearch(Search::refresh);
}

// The list shown so far is let go of elsewhere, once no view shows it any more.
void AppModel::publishList(ArchiveWork::SharedList list) {
    ArchiveWork::SharedList former = std::exchange(filteredEntries.edit(), std::move(list));
    if (former && !former->empty()) ArchiveWork::release(std::move(former));
}

} // namespace TesselMail
