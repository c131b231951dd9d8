// Finding and ordering entries.
#include "tools/probe/Probe.h"

#include "MailCore/Search/MailSearch.h"

#include <chrono>
#include <memory>
#include <span>
#include <utility>

namespace Probe {
namespace {

Json ids(std::span<const SharedEntry> entries) {
    Json result = Json::array();
    for (const SharedEntry& entry : entries) result.push_back(entry->id);
    return result;
}

Json search(const Json& request) {
    const std::string query = text(request, "query");
    const bool newestFirst = boolean(request, "newestFirst");
    const MailCollection collection = collectionAt(path(request));
    const auto begin = std::chrono::steady_clock::now();
    MailSearch::Results found = MailSearch::scan(collection.entries, query, never);
    const EntryList ordered = MailSearch::ordered(std::move(found.entries), newestFirst);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    return {{"entries", ids(ordered)}, {"unreadable", found.unreadable}, {"seconds", seconds.count()}};
}

Json matching(const Json& request) {
    const std::string query = text(request, "query");
    return ids(MailSearch::matching(collectionAt(path(request)).entries, query, never));
}

Json ordered(const Json& request) {
    EntryList entries;
    for (const Json& item : list(request, "entries")) {
        MessageEntry entry{.id = integer(item, "id")};
        if (!isAbsent(item, "timestamp")) entry.timestamp = number(item, "timestamp");
        entries.push_back(std::make_shared<const MessageEntry>(std::move(entry)));
    }
    return ids(MailSearch::ordered(std::move(entries), boolean(request, "newestFirst")));
}

} // namespace

Operations searchOperations() {
    return {
        {"search", search},
        {"matching", matching},
        {"ordered", ordered},
    };
}

} // namespace Probe
