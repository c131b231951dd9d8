#include "MailCore/Sources/MemoryIndex.h"

#include <utility>

namespace MailCore {

namespace {

constexpr std::chrono::milliseconds deliveryInterval{150};

} // namespace

MemoryIndex::MemoryIndex(URL url, const IndexLimits& limits, const MailReader::Progress& progress,
                         const MailReader::Batch& batch)
    : url_(std::move(url)), limits_(limits), progress_(progress), batch_(batch) {}

bool MemoryIndex::append(const MessageEntry& entry) {
    const std::int64_t cost = entry.metadataBytes();
    if (std::cmp_greater_equal(entries_.size(), limits_.messages()) || limits_.bytes() - bytes_ < cost) {
        limitReached_ = true;
        return false;
    }
    entries_.push_back(arena_.add(entry));
    bytes_ += cost;
    if (entries_.size() == 1 || Clock::now() - lastDelivery_ >= deliveryInterval) deliver();
    return true;
}

void MemoryIndex::deliver() {
    if (delivered_ < entries_.size()) {
        batch_(std::span(entries_).subspan(delivered_));
        delivered_ = entries_.size();
    }
    progress_(entries_.size());
    lastDelivery_ = Clock::now();
}

MailCollection MemoryIndex::collection(std::string kind) && {
    entries_.shrink_to_fit();
    return {
        .url = std::move(url_),
        .entries = std::move(entries_),
        .kind = std::move(kind),
        .indexLimitReached = limitReached_,
        .metadataBytes = bytes_,
    };
}

} // namespace MailCore
