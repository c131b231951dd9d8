#include "TesselMail/Model/AppModel.h"

#include "TesselMail/Model/ErrorText.h"

namespace TesselMail {

using MailCore::MailCollection;
using MailCore::URL;

std::shared_ptr<AppModel> AppModel::create(Preferences& preferences, FilePanels& panels, Desktop& desktop) {
    struct Creatable : AppModel {
        Creatable(Preferences& preferences, FilePanels& panels, Desktop& desktop)
            : AppModel(preferences, panels, desktop) {}
    };
    return std::make_shared<Creatable>(preferences, panels, desktop);
}

AppModel::AppModel(Preferences& preferences, FilePanels& panels, Desktop& desktop)
    : preferences_(preferences), panels_(panels), desktop_(desktop) {}

AppModel::~AppModel() {
    for (const CancellationToken& token : {token_, readToken_})
        if (token) token->stop();
}

const MailCollection* AppModel::active() const noexcept {
    return *selectedCollection ? sources_.find(**selectedCollection) : nullptr;
}

bool AppModel::listPending() const noexcept {
    const MailCollection* const collection = active();
    return search_.isPending() || (collection && collection->isIndexing);
}

std::string AppModel::errorText(const std::exception_ptr& error) const {
    return preferences_.text(TesselMail::errorText(error));
}

Failure AppModel::fail(const std::exception_ptr& cause, const FailedWork& work) {
    const MailCollection* const collection = active();
    return fail(cause, work, collection ? collection->url : URL());
}

Failure AppModel::fail(const std::exception_ptr& cause, const FailedWork& work, const URL& collection) {
    Failure failure = failureText(cause, work);
    if (!collection.isFile() && failure.remedy == Remedy::reopen) failure.remedy = Remedy::none;
    changedSource_.reset();
    if (failure.remedy == Remedy::reopen) changedSource_ = collection;
    error.set(preferences_.text(failure.text));
    remedy.set(failure.remedy);
    return failure;
}

void AppModel::dismissError() {
    const Changing changing(changes_);
    error.set(std::nullopt);
    remedy.set(Remedy::none);
    changedSource_.reset();
}

} // namespace TesselMail
