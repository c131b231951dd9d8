#include "TesselMail/Model/AppModel.h"

#include "TesselMail/Model/ErrorText.h"

#include <algorithm>

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
    : preferences_(preferences), panels_(panels), desktop_(desktop) {
    filteredEntries.value_ = std::make_shared<const MailCore::EntryList>();
}

AppModel::~AppModel() {
    for (const CancellationToken& token : {token_, readToken_, searchToken_})
        if (token) token->stop();
}

const MailCollection* AppModel::find(CollectionID id) const noexcept {
    const auto found = std::ranges::find(*collections, id, &MailCollection::id);
    return found == collections->end() ? nullptr : &*found;
}

MailCollection* AppModel::edit(CollectionID id) {
    if (!find(id)) return nullptr;
    return &*std::ranges::find(collections.edit(), id, &MailCollection::id);
}

const MailCollection* AppModel::active() const noexcept {
    return selectedCollection.get() ? find(*selectedCollection.get()) : nullptr;
}

MailFileScope AppModel::scopeOf(const URL& url) const {
    const auto found = scopes_.find(url);
    return found == scopes_.end() ? nullptr : found->second;
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
