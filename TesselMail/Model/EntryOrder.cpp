#include "TesselMail/Model/EntryOrder.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace TesselMail {
namespace {

// The sort runs over keys that lie side by side; following 200,000 handles for each comparison would not fit
// the processor's cache.
struct Key {
    double rank;
    std::int64_t id;
    std::size_t position;

    bool operator<(const Key& other) const noexcept {
        return rank != other.rank ? rank < other.rank : id < other.id;
    }
};

double rank(const MailCore::MessageEntry& entry, bool newestFirst) noexcept {
    if (!entry.timestamp) return std::numeric_limits<double>::infinity();
    return newestFirst ? -*entry.timestamp : *entry.timestamp;
}

} // namespace

MailCore::EntryList orderedEntries(MailCore::EntryList entries, bool newestFirst) {
    std::vector<Key> keys;
    keys.reserve(entries.size());
    for (std::size_t at = 0; at < entries.size(); ++at)
        keys.push_back({rank(*entries[at], newestFirst), entries[at]->id, at});

    // Archives are mostly in the order of arrival, one way or the other.
    if (std::is_sorted(keys.begin(), keys.end())) return entries;
    std::reverse(keys.begin(), keys.end());
    if (!std::is_sorted(keys.begin(), keys.end())) std::sort(keys.begin(), keys.end());

    MailCore::EntryList result;
    result.reserve(entries.size());
    for (const Key& key : keys) result.push_back(std::move(entries[key.position]));
    return result;
}

} // namespace TesselMail
