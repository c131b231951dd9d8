#pragma once

#include "MailCore/Model/Cancelled.h"

#include <atomic>
#include <memory>

namespace TesselMail {

/// The stop flag of one piece of work, shared by the side that asked for it and the side that does it. Once
/// stopped, it stays stopped.
class Cancellation {
public:
    void stop() noexcept { stopped_.store(true, std::memory_order_release); }
    bool isStopped() const noexcept { return stopped_.load(std::memory_order_acquire); }

private:
    std::atomic<bool> stopped_ = false;
};

using CancellationToken = std::shared_ptr<Cancellation>;

/// The predicate for the engine: whether `token` has been stopped. It keeps the token alive.
inline MailCore::Cancelled cancelledBy(CancellationToken token) {
    return [token = std::move(token)] { return token->isStopped(); };
}

} // namespace TesselMail
