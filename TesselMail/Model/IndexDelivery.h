#pragma once

#include "MailCore/Model/MessageEntry.h"

#include <functional>
#include <memory>
#include <mutex>
#include <span>

namespace TesselMail {

/// Carries the entries of one indexing run to the interface thread while it goes on. However fast they come,
/// at most one hand-over is under way; what arrives meanwhile joins it.
class IndexDelivery : public std::enable_shared_from_this<IndexDelivery> {
public:
    using Receive = std::function<void(MailCore::EntryList entries)>;

    /// `receive` is always called on the interface thread, with at least one entry.
    static std::shared_ptr<IndexDelivery> create(Receive receive);

    /// Takes entries from the indexing queue.
    void push(std::span<const MailCore::SharedEntry> entries);
    /// Hands over what is pending. Interface thread only.
    void flush();

private:
    explicit IndexDelivery(Receive receive) : receive_(std::move(receive)) {}

    std::mutex lock_; // guards what follows, never held while `receive_` runs
    MailCore::EntryList pending_;
    bool scheduled_ = false;
    const Receive receive_;
};

} // namespace TesselMail
