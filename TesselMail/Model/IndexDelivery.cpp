#include "TesselMail/Model/IndexDelivery.h"

#include "TesselMail/Platform/InterfaceThread.h"

#include <utility>

namespace TesselMail {

std::shared_ptr<IndexDelivery> IndexDelivery::create(Receive receive) {
    struct Creatable : IndexDelivery {
        explicit Creatable(Receive receive) : IndexDelivery(std::move(receive)) {}
    };
    return std::make_shared<Creatable>(std::move(receive));
}

void IndexDelivery::push(std::span<const MailCore::SharedEntry> entries) {
    {
        const std::lock_guard guard(lock_);
        pending_.insert(pending_.end(), entries.begin(), entries.end());
        if (std::exchange(scheduled_, true)) return;
    }
    InterfaceThread::post([self = shared_from_this()] { self->flush(); });
}

void IndexDelivery::flush() {
    MailCore::EntryList entries;
    {
        const std::lock_guard guard(lock_);
        entries = std::exchange(pending_, {});
        scheduled_ = false;
    }
    if (!entries.empty()) receive_(std::move(entries));
}

} // namespace TesselMail
