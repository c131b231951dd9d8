// Mail links that the system hands over.
#include "TesselMail/Model/AppModel.h"

namespace TesselMail {

void AppModel::receive(const MailCore::URL& url) {
    const Changing changing(changes_);
    std::optional<MailCore::MailtoCapture> link;
    try {
        link.emplace(url.text());
    } catch (...) {
        return fail(std::current_exception());
    }
    cancel();
    capture.set(std::move(link));
    if (readToken_) readToken_->stop();
    reading.set(false);
    clearPresentation();
    selectedCollection.set(std::nullopt);
    selectedEntry.set(std::nullopt);
    query.set("");
    scheduleSearch(Search::restart);
    showDetails.set(false);
    desktop_.present();
}

} // namespace TesselMail
