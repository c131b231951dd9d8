#include "TesselMail/Platform/InterfaceThread.h"

#include <glib.h>

#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace TesselMail::InterfaceThread {
namespace {

struct Posted {
    std::mutex lock;
    std::deque<std::function<void()>> waiting;
};

Posted& posted() {
    // Never destroyed: a background thread may still post while the process ends.
    static Posted* const instance = std::make_unique<Posted>().release();
    return *instance;
}

// One piece of work per source of the loop, which orders it among everything else that waits.
gboolean runNext(gpointer) noexcept {
    std::function<void()> work;
    {
        const std::lock_guard guard(posted().lock);
        work = std::move(posted().waiting.front());
        posted().waiting.pop_front();
    }
    work();
    return G_SOURCE_REMOVE;
}

gboolean runDelayed(gpointer work) noexcept {
    (*static_cast<std::function<void()>*>(work))();
    return G_SOURCE_REMOVE;
}

void forget(gpointer work) noexcept {
    const std::unique_ptr<std::function<void()>> owned(static_cast<std::function<void()>*>(work));
}

} // namespace

void post(std::function<void()> work) {
    {
        const std::lock_guard guard(posted().lock);
        posted().waiting.push_back(std::move(work));
    }
    g_idle_add_full(G_PRIORITY_DEFAULT, runNext, nullptr, nullptr);
}

void postAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    auto owned = std::make_unique<std::function<void()>>(std::move(work));
    g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(delay.count()), runDelayed, owned.release(),
                       forget);
}

Later<Done> pause(std::chrono::milliseconds delay) {
    return Later<Done>([delay](Later<Done>::Finish finish) {
        postAfter(delay, [finish = std::move(finish)] { finish(Done()); });
    });
}

} // namespace TesselMail::InterfaceThread
