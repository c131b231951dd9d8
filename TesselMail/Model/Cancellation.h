#pragma once

#include "MailCore/Model/Cancelled.h"

#include <atomic>
#include <memory>

namespace TesselMail {

/// The stop flag of one piece of work, shared by who asked for it and who does it. Once stopped it stays so.
class Cancellation {
public:
    void stop() noexcept { stopped_.store(true, std::memory_order_release); }
    bool isStopped() const noexcept { return stopped_.load(std::memory_order_acquire); }

private:
    std::atomic<bool> stopped_ = false;
};

using CancellationToken = std::shared_ptr<Cancellation>;

/// The question the engine asks, answered by `token`, which it keeps alive.
inline MailCore::Cancelled cancelledBy(CancellationToken token) {
    return [token = std::move(token)] { return token->isStopped(); };
}

} // namespace TesselMail
