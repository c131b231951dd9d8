#pragma once

#include "MailCore/Model/MailCollection.h"
#include "MailCore/Sources/EntryArena.h"
#include "MailCore/Sources/MailReader.h"

#include <chrono>
#include <string>

namespace MailCore {

/// Gathers the entries of one indexing run within its budget and hands them on in batches: the first at once,
/// later ones at most every 0.15 seconds.
class MemoryIndex {
public:
    /// Borrows `progress` and `batch`, which outlive it.
    MemoryIndex(URL url, const IndexLimits& limits, const MailReader::Progress& progress,
                const MailReader::Batch& batch);

    /// How many entries there are: the id of the next one.
    std::size_t count() const noexcept { return entries_.size(); }
    /// Takes `entry`, or answers false and remembers that a limit was reached.
    bool append(const MessageEntry& entry);
    /// Hands what was not yet delivered to `batch`, and the count to `progress`.
    void deliver();
    /// Ends the run: the collection of everything appended.
    MailCollection collection(std::string kind) &&;

private:
    using Clock = std::chrono::steady_clock;

    URL url_;
    IndexLimits limits_;
    const MailReader::Progress& progress_;
    const MailReader::Batch& batch_;
    EntryArena arena_;
    EntryList entries_;
    std::int64_t bytes_ = 0;
    std::size_t delivered_ = 0;
    Clock::time_point lastDelivery_ = Clock::now();
    bool limitReached_ = false;
};

} // namespace MailCore
