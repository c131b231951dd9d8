#include "MailCore/Dates/DisplayCache.h"

namespace MailCore {

namespace {

constexpr std::size_t mostDates = 1'024;
constexpr std::size_t largestCost = 1'048'576;

} // namespace

std::optional<std::string> DisplayCache::find(const std::string& key) {
    const std::lock_guard guard(lock_);
    const auto place = places_.find(key);
    if (place == places_.end()) return std::nullopt;
    entries_.splice(entries_.begin(), entries_, place->second);
    return place->second->text;
}

void DisplayCache::store(const std::string& key, const std::string& text, std::size_t cost) {
    const std::lock_guard guard(lock_);
    if (places_.contains(key)) return; // another thread was quicker
    entries_.push_front({key, text, cost});
    places_.emplace(entries_.front().key, entries_.begin());
    cost_ += cost;
    evict();
}

void DisplayCache::evict() {
    while (!entries_.empty() && (entries_.size() > mostDates || cost_ > largestCost)) {
        cost_ -= entries_.back().cost;
        places_.erase(entries_.back().key);
        entries_.pop_back();
    }
}

} // namespace MailCore
