#include "TesselMail/Model/AppModel.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/MailReader.h"

#include <algorithm>
#include <utility>

namespace TesselMail {

using MailCore::MailCollection;
using MailCore::MailError;
using MailCore::SharedEntry;
using MailCore::URL;

std::shared_ptr<AppModel> AppModel::create(Preferences& preferences, FilePanels& panels) {
    struct Creatable : AppModel {
        Creatable(Preferences& preferences, FilePanels& panels) : AppModel(preferences, panels) {}
    };
    return std::make_shared<Creatable>(preferences, panels);
}

AppModel::AppModel(Preferences& preferences, FilePanels& panels)
    : preferences_(preferences), panels_(panels) {
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
    try {
        std::rethrow_exception(error);
    } catch (const MailError& mailError) {
        switch (mailError.which()) {
        case MailError::tooLarge: return preferences_.text(Texts::tooLarge);
        case MailError::malformed: return preferences_.text(Texts::malformed);
        case MailError::unsupported: return preferences_.text(Texts::unsupported);
        case MailError::tooMany: return preferences_.text(Texts::tooMany);
        case MailError::cancelled: return preferences_.text(Texts::cancelled);
        case MailError::sourceChanged: return preferences_.text(Texts::sourceChanged);
        case MailError::unsafeDestination: return preferences_.text(Texts::unsafeDestination);
        }
    } catch (...) {
        // Whatever the system reports is said in the one general sentence.
    }
    return preferences_.text(Texts::fileFailed);
}

void AppModel::fail(const std::exception_ptr& failure) {
    error.set(errorText(failure));
}

void AppModel::dismissError() {
    const Changing changing(changes_);
    error.set(std::nullopt);
}

} // namespace TesselMail
