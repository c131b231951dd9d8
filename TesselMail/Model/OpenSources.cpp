#include "TesselMail/Model/OpenSources.h"

#include "MailCore/Dates/MailDate.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/Text.h"

#include <glib.h>

#include <algorithm>
#include <string>
#include <utility>

namespace TesselMail {

using MailCore::MailCollection;
using MailCore::URL;

namespace {

constexpr std::size_t memoryMessages = 20;

std::string presumedKind(const URL& url) {
    namespace Kinds = MailCore::SourceKinds;
    const MailCore::SourceKind* const kind = Kinds::of(url);
    if (kind && kind->isArchive) return std::string(kind->name);
    const bool isFolder = url.pathExtension().empty() || g_file_test(url.path().c_str(), G_FILE_TEST_IS_DIR);
    if (isFolder) return std::string(Kinds::maildir);
    return kind ? std::string(kind->name) : MailCore::Text::uppered(url.pathExtension());
}

// An address that leads to no file and is different from all others.
URL memoryURL(const std::string& name) {
    return URL::parse("tessel-mail-message://" + MailCore::UUID::random().text() + "/")
        .value()
        .appending(MailCore::safeFilename(name));
}

} // namespace

const MailCollection* OpenSources::find(CollectionID id) const noexcept {
    const auto found = std::ranges::find(*collections, id, &MailCollection::id);
    return found == collections->end() ? nullptr : &*found;
}

const MailCollection* OpenSources::find(const URL& url) const noexcept {
    const auto found = std::ranges::find(*collections, url, &MailCollection::url);
    return found == collections->end() ? nullptr : &*found;
}

MailCollection* OpenSources::edit(CollectionID id) {
    if (!find(id)) return nullptr;
    return &*std::ranges::find(collections.edit(), id, &MailCollection::id);
}

MailFileScope OpenSources::scopeOf(const URL& url) const {
    const auto found = scopes_.find(url);
    return found == scopes_.end() ? nullptr : found->second;
}

std::vector<MailFileScope> OpenSources::scopes() const {
    std::vector<MailFileScope> all;
    for (const auto& [url, scope] : scopes_) all.push_back(scope);
    return all;
}

MailCollection OpenSources::placeholder(const URL& url) {
    MailCollection collection;
    collection.url = url;
    collection.kind = presumedKind(url);
    collection.isIndexing = true;
    return collection;
}

std::int64_t OpenSources::indexRoom(const URL& url) const {
    std::int64_t room = MailCore::Limits::indexBytes;
    for (const MailCollection& collection : *collections)
        if (!(collection.url == url)) room -= collection.metadataBytes;
    return room;
}

std::size_t OpenSources::add(const MailCore::EntryList& entries, const MailCollection& placeholder,
                             const MailFileScope& scope) {
    if (!find(placeholder.id)) replace(placeholder, scope);
    MailCollection& collection = *edit(placeholder.id);
    for (const MailCore::SharedEntry& entry : entries) {
        collection.metadataBytes += entry->metadataBytes();
        collection.entries.push_back(entry);
    }
    return collection.entries.size();
}

MailCore::EntryList OpenSources::finish(MailCollection result, const MailFileScope& scope) {
    indexing_.reset();
    result.isIndexing = false;
    if (MailCollection* const listed = edit(result.id)) {
        // What has arrived is the same entries in a list of its own, and stays.
        std::swap(result.entries, listed->entries);
        std::swap(result.metadataBytes, listed->metadataBytes);
        ArchiveWork::release(std::make_shared<const MailCore::EntryList>(std::move(listed->entries)));
        *listed = std::move(result);
        return {};
    }
    MailCore::EntryList arrived = result.entries;
    replace(std::move(result), scope);
    return arrived;
}

void OpenSources::interrupt() {
    const auto id = std::exchange(indexing_, std::nullopt);
    MailCollection* const collection = id ? edit(*id) : nullptr;
    if (!collection) return;
    collection->isIndexing = false;
    collection->indexInterrupted = true;
}

std::optional<OpenSources::EntryID> OpenSources::remembered(CollectionID collection) const {
    const auto found = selections_.find(collection);
    return found == selections_.end() ? std::nullopt : std::optional(found->second);
}

OpenSources::CollectionID OpenSources::add(const SharedAttachment& attachment, AttachmentPlace place,
                                           ArchiveWork::ReadMessage content) {
    const MailCore::MailMessage& decoded = *content.message;
    MailCollection collection;
    collection.url = memoryURL(attachment->name);
    collection.kind = MailCore::SourceKinds::attached;
    collection.entries.push_back(std::make_shared<const MailCore::MessageEntry>(
        MailCore::MessageEntry{.id = 0,
                               .subject = decoded.subject,
                               .from = decoded.from,
                               .date = decoded.date,
                               .length = static_cast<std::int64_t>(attachment->bytes.size()),
                               .file = collection.url,
                               .recipients = decoded.to + " " + decoded.cc,
                               .timestamp = MailCore::MailDate::timestamp(decoded.date)}));

    MemoryMessage memory{.content = std::move(content), .original = nullptr, .place = place};
    if (attachment->embedded.empty()) // up to 32 MiB: kept with its message rather than copied here
        memory.original = std::shared_ptr<const MailCore::Bytes>(attachment, &attachment->bytes);
    const CollectionID id = collection.id;
    memory_.emplace(id, std::move(memory));
    collections.edit().push_back(std::move(collection));
    return id;
}

bool OpenSources::memoryFull() const noexcept {
    return memory_.size() >= memoryMessages;
}

const OpenSources::MemoryMessage* OpenSources::memory(CollectionID id) const noexcept {
    const auto found = memory_.find(id);
    return found == memory_.end() ? nullptr : &found->second;
}

std::optional<OpenSources::CollectionID> OpenSources::openedFrom(const AttachmentPlace& place) const {
    const auto found =
        std::ranges::find_if(memory_, [&](const auto& one) { return one.second.place == place; });
    return found == memory_.end() ? std::nullopt : std::optional(found->first);
}

std::optional<OpenSources::CollectionID> OpenSources::close(CollectionID id) {
    const MailCollection* const closing = find(id);
    if (!closing) return std::nullopt;
    const auto position = static_cast<std::size_t>(closing - collections->data());
    remove(position);
    memory_.erase(id);
    releaseUnusedScopes();
    if (collections->empty()) return std::nullopt;
    return (*collections)[std::min(position, collections->size() - 1)].id;
}

void OpenSources::closeAll() {
    while (!collections->empty()) remove(collections->size() - 1);
    indexing_.reset();
    scopes_.clear();
    selections_.clear();
    memory_.clear();
}

// Lists a source in the place of its older copies.
void OpenSources::replace(MailCollection collection, const MailFileScope& scope) {
    for (std::size_t position = collections->size(); position > 0; --position)
        if ((*collections)[position - 1].url == collection.url) remove(position - 1);
    scopes_[scope->url] = scope;
    collections.edit().push_back(std::move(collection));
}

// Releasing a long list takes a while, so another thread does it.
void OpenSources::remove(std::size_t position) {
    auto& open = collections.edit();
    const auto closing = open.begin() + static_cast<std::ptrdiff_t>(position);
    ArchiveWork::release(std::make_shared<const MailCore::EntryList>(std::move(closing->entries)));
    open.erase(closing);
}

void OpenSources::releaseUnusedScopes() {
    std::erase_if(scopes_, [this](const auto& scope) { return !find(scope.first); });
    std::erase_if(selections_, [this](const auto& selection) { return !find(selection.first); });
}

} // namespace TesselMail
