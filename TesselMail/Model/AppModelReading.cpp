// How one message is selected, read and shown, and what of it can be written out.
#include "TesselMail/Model/AppModel.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Sources/MailReader.h"

#include <algorithm>
#include <utility>

namespace TesselMail {

using MailCore::MailAttachment;
using MailCore::MailCollection;
using MailCore::MailError;
using MailCore::SharedEntry;
using MailCore::URL;

namespace {

std::string proposedName(const MailCore::MessageEntry& entry) {
    namespace Kinds = MailCore::SourceKinds;
    if (Kinds::formatIn(entry.file) == MailCore::MessageFormat::outlook)
        return entry.file.lastPathComponent();
    return MailCore::safeFilename(entry.subject.empty() ? "Message" : entry.subject.view())
        .append(".")
        .append(Kinds::originalExtension);
}

SavePanel savePanel(const Preferences& preferences, const Phrase& title, std::string name) {
    return {.name = std::move(name),
            .title = preferences.text(title),
            .accept = preferences.text(Texts::save),
            .cancel = preferences.text(Texts::cancel)};
}

} // namespace

SharedEntry AppModel::entry() const {
    const MailCollection* const collection = active();
    if (!collection || !*selectedEntry || **selectedEntry < 0) return nullptr;
    const auto position = static_cast<std::size_t>(**selectedEntry);
    if (position >= collection->entries.size()) return nullptr;
    const SharedEntry& found = collection->entries[position];
    return found->id == **selectedEntry ? found : nullptr;
}

bool AppModel::currentMessageReady() const noexcept {
    return !*reading && !*readerFailed && *message && displayedCollection_ == *selectedCollection &&
           displayedEntry_ == *selectedEntry;
}

bool AppModel::selectionTooLarge() const {
    const SharedEntry selected = entry();
    return selected && selected->length > MailCore::Limits::message;
}

void AppModel::select(std::optional<EntryID> id) {
    const Changing changing(changes_);
    selecting_.emit();
    if (id == *selectedEntry && currentMessageReady() && !*error) return;

    if (readToken_) readToken_->stop();
    selectedEntry.set(id);
    if (*selectedCollection && id) sources_.remember(**selectedCollection, *id);
    readRequest.set(MailCore::UUID::random());

    const SharedEntry selected = entry();
    if (!selected || selected->length > MailCore::Limits::message) {
        clearPresentation();
        reading.set(false);
        return;
    }
    const CollectionID collection = **selectedCollection;
    if (const auto* const memory = sources_.memory(collection)) {
        show(memory->content, collection, selected->id);
        return;
    }
    readToken_ = std::make_shared<Cancellation>();
    readFailure.set(std::nullopt);
    reading.set(true);
    readEntry(shared_from_this(), collection, selected, sources_.scopeOf(active()->url), readToken_);
}

Task AppModel::readEntry(std::shared_ptr<AppModel> self, CollectionID collection, SharedEntry entry,
                         MailFileScope scope, CancellationToken token) {
    auto content = co_await ArchiveWork::read(entry, scope, token).outcome();
    if (token->isStopped()) co_return;
    const Changing changing(self->changes_);
    if (content) {
        self->show(std::move(content).take(), collection, entry->id);
        co_return;
    }
    self->clearPresentation();
    self->reading.set(false);
    self->readFailure.set(self->fail(content.error(), {.source = entry->file}));
}

void AppModel::show(ArchiveWork::ReadMessage content, CollectionID collection, EntryID entry) {
    readerFailed.set(false);
    readFailure.set(std::nullopt);
    message.set(std::move(content.message));
    rendered.set(std::move(content.rendered));
    displayedCollection_ = collection;
    displayedEntry_ = entry;
    selectionVersion.set(MailCore::UUID::random());
    showDetails.set(false);
    reading.set(false);
}

// Nothing is selected, listed or shown any more, and nothing is being read.
void AppModel::leaveSelection() {
    if (readToken_) readToken_->stop();
    reading.set(false);
    clearPresentation();
    selectedCollection.set(std::nullopt);
    selectedEntry.set(std::nullopt);
    search_.list(std::nullopt);
}

void AppModel::clearPresentation() {
    readerFailed.set(false);
    readFailure.set(std::nullopt);
    message.set(nullptr);
    rendered.set(nullptr);
    displayedCollection_.reset();
    displayedEntry_.reset();
    showDetails.set(false);
    selectionVersion.set(MailCore::UUID::random());
}

void AppModel::setShowDetails(bool show) {
    const Changing changing(changes_);
    showDetails.set(show);
}

void AppModel::readingViewFailed(std::optional<MailCore::UUID> identity, const Phrase& explanation) {
    if (identity != *selectionVersion || !*message || *reading) return;
    const Changing changing(changes_);
    readerFailed.set(true);
    readFailure.set(Failure{explanation, Remedy::tryAgain});
    dismissError();
    error.set(preferences_.text(explanation));
    remedy.set(Remedy::tryAgain);
}

AppModel::SharedAttachment AppModel::shownAttachment(MailCore::UUID id) const {
    if (!currentMessageReady()) return nullptr;
    const auto found = std::ranges::find((*message)->attachments, id, &MailAttachment::id);
    if (found == (*message)->attachments.end() || !found->available) return nullptr;
    return {*message, &*found}; // lives as long as its message
}

void AppModel::previewAttachment(MailCore::UUID id) {
    const auto attachment = shownAttachment(id);
    if (!attachment || !attachment->canPreview()) return;
    const Changing changing(changes_);
    const AttachmentPlace place = placeOf(*attachment);
    if (const auto collection = sources_.openedFrom(place)) return selectCollection(collection);
    if (sources_.memoryFull()) {
        fail(std::make_exception_ptr(MailError(MailError::tooMany)));
        return;
    }
    readAttachment(shared_from_this(), attachment, place);
}

Task AppModel::readAttachment(std::shared_ptr<AppModel> self, SharedAttachment attachment,
                              AttachmentPlace place) {
    const MailCore::UUID version = *self->selectionVersion;
    auto content = co_await ArchiveWork::attachment(attachment, std::make_shared<Cancellation>()).outcome();
    const Changing changing(self->changes_);
    if (!content)
        self->fail(content.error());
    else if (self->currentMessageReady() && *self->selectionVersion == version)
        self->selectCollection(self->sources_.add(attachment, place, std::move(content).take()));
}

AppModel::AttachmentPlace AppModel::placeOf(const MailAttachment& attachment) const {
    const auto position = &attachment - (*message)->attachments.data();
    return {*displayedCollection_, *displayedEntry_, static_cast<std::size_t>(position)};
}

void AppModel::saveAttachment(MailCore::UUID id) {
    const auto attachment = shownAttachment(id);
    if (attachment && attachment->embedded.empty()) saveAttachmentFile(shared_from_this(), attachment);
}

Task AppModel::saveAttachmentFile(std::shared_ptr<AppModel> self, SharedAttachment attachment) {
    SavePanel panel =
        savePanel(self->preferences_, Texts::saveAttachment, MailCore::safeFilename(attachment->name));
    const std::optional<URL> destination = co_await self->panels_.save(std::move(panel));
    if (!destination) co_return;
    const std::shared_ptr<const MailCore::Bytes> bytes(attachment, &attachment->bytes);
    Outcome<Done> written = self->checkDestination(*destination);
    if (written) written = co_await ArchiveWork::write(bytes, *destination).outcome();
    const Changing changing(self->changes_);
    if (!written)
        self->fail(written.error(), {.kind = FailedWork::Kind::saving, .source = std::nullopt});
    else
        self->saved_.emit(*destination);
}

bool AppModel::canExportOriginal() const {
    if (!*selectedCollection || !entry()) return false;
    const auto* const memory = sources_.memory(**selectedCollection);
    return !memory || memory->original;
}

void AppModel::exportOriginal() {
    if (*reading || !canExportOriginal()) return;
    saveOriginalFile(shared_from_this(), entry(), **selectedCollection);
}

Task AppModel::saveOriginalFile(std::shared_ptr<AppModel> self, SharedEntry entry, CollectionID collection) {
    // What is to be written is settled before the panel opens; the collection may be closed meanwhile.
    const auto* const memory = self->sources_.memory(collection);
    const auto original = memory ? memory->original : nullptr;
    const URL source = self->sources_.find(collection)->url;
    const MailFileScope scope = self->sources_.scopeOf(source);

    SavePanel panel = savePanel(self->preferences_, Texts::exportOriginal, proposedName(*entry));
    const std::optional<URL> destination = co_await self->panels_.save(std::move(panel));
    if (!destination) co_return;
    const auto token = std::make_shared<Cancellation>();
    Outcome<Done> written = self->checkDestination(*destination);
    if (written && original)
        written = co_await ArchiveWork::write(original, *destination).outcome();
    else if (written)
        written = co_await ArchiveWork::exportOriginal(entry, *destination, scope, token).outcome();
    const Changing changing(self->changes_);
    if (!written)
        self->fail(written.error(), {.kind = FailedWork::Kind::saving, .source = entry->file}, source);
    else
        self->saved_.emit(*destination);
}

// No open source may be written over.
Outcome<Done> AppModel::checkDestination(const URL& destination) const {
    return Outcome<Done>::of([&] {
        std::vector<URL> open;
        for (const MailCollection& collection : *collections) open.push_back(collection.url);
        MailCore::MailReader::validateDestination(destination, open);
        return Done();
    });
}

} // namespace TesselMail
