// Mail links that the system hands over.
#include "TesselMail/Model/AppModel.h"

#include <utility>

namespace TesselMail {

void AppModel::receive(const MailCore::URL& url) {
    receive(url.text());
}

void AppModel::receive(std::string_view text) {
    const Changing changing(changes_);
    std::optional<MailCore::MailtoCapture> link;
    try {
        link.emplace(text);
    } catch (...) {
        fail(std::current_exception());
        return;
    }
    cancel();
    if (*selectedCollection) beforeCapture_ = *selectedCollection; // a second link comes without one
    capture.set(std::move(link));
    leaveSelection();
    desktop_.present();
}

void AppModel::closeCapture() {
    if (!*capture) return;
    const Changing changing(changes_);
    const std::optional<CollectionID> former = std::exchange(beforeCapture_, std::nullopt);
    selectCollection(former && sources_.find(*former) ? former : std::nullopt);
}

} // namespace TesselMail
