// How files and folders become collections, stay open and are closed.
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "TesselMail/Model/AppModel.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Sources/MailReader.h"

#include <fmt/format.h>
#include <glib.h>

#include <algorithm>
#include <set>
#include <span>
#include <utility>

namespace TesselMail {

using MailCore::MailCollection;
using MailCore::URL;

namespace {

std::vector<URL> distinctFiles(const std::vector<URL>& urls) {
    std::vector<URL> files;
    std::set<URL> seen;
    for (const URL& url : urls)
        if (url.isFile() && seen.insert(url).second) files.push_back(url);
    return files;
}

// What a file is called in a notice. A name cannot begin another notice, nor turn the sentence around.
std::string nameOf(const URL& url) {
    const std::string name = url.lastPathComponent();
    std::string result;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t start = at;
        const char32_t codePoint = MailCore::Text::next(name, at);
        if (codePoint < 0x20 || MailCore::Text::isWhitespace(codePoint))
            result += ' ';
        else if (!MailCore::Text::setsDirection(codePoint))
            result.append(name, start, at - start);
    }
    return result;
}

std::string joined(const std::vector<std::string>& notices) {
    std::string text;
    for (const std::string& notice : notices) {
        if (!text.empty()) text += "\n\n";
        text += notice;
    }
    return text;
}

} // namespace

// One request to open files, from its start to its end.
struct AppModel::Run {
    std::vector<MailFileScope> scopes;
    CancellationToken token;
    MailCore::UUID request; // of the selection when it began
    std::size_t left = 0;   // files beyond those that one request opens
};

void AppModel::open(const std::vector<URL>& urls, std::size_t left) {
    const auto looked = std::span(urls).first(std::min(urls.size(), mostFiles));
    const auto link = std::ranges::find(looked, "mailto", &URL::scheme);
    if (link != looked.end()) return receive(*link);
    std::vector<URL> files = distinctFiles(urls);
    if (files.empty()) return;
    if (files.size() > mostFiles) {
        left += files.size() - mostFiles;
        files.erase(files.begin() + mostFiles, files.end());
    }

    const Changing changing(changes_);
    cancel();
    token_ = std::make_shared<Cancellation>();
    busy.set(true);
    progress.set(0);
    dismissError();

    Run run{.scopes = {}, .token = token_, .request = *readRequest, .left = left};
    for (const URL& url : files) {
        MailFileScope scope = sources_.scopeOf(url);
        if (!scope) scope = std::make_shared<const ScopedMailFile>(ScopedMailFile{url});
        run.scopes.push_back(std::move(scope));
    }
    openAll(shared_from_this(), std::move(run));
}

void AppModel::reopenSource() {
    const MailCollection* const shown = active();
    std::optional<URL> source = changedSource_;
    if (!source && shown) source = shown->url;
    if (!source || !source->isFile()) return;
    const Changing changing(changes_);
    const bool isShown = shown && shown->url == *source;
    open({*source}); // after which `shown` may lead nowhere
    if (isShown)
        if (MailCore::SharedEntry selected = entry())
            return_ = Return{.source = *source, .entry = std::move(selected), .request = std::nullopt};
}

// Whether what opens now is shown: the first source of the request, or the one after others that failed,
// unless people have chosen something meanwhile.
bool AppModel::takesSelection(const Run& run, const MailFileScope& scope) const {
    return scope == run.scopes.front() || (preferredOpeningID_ && *readRequest == run.request);
}

Task AppModel::openAll(std::shared_ptr<AppModel> self, Run run) {
    std::vector<std::string> notices;
    for (const MailFileScope& scope : run.scopes) {
        if (run.token->isStopped()) break;

        if (const MailCollection* const opened = self->sources_.find(scope->url)) {
            const CollectionID id = opened->id;
            const MailCore::SharedEntry proof = MailCore::MailReader::entryOfProof(*opened);
            auto current = co_await ArchiveWork::isCurrent(proof, scope, run.token).outcome();
            if (run.token->isStopped()) break;
            if (current && std::move(current).take()) { // what fails here fails in indexing, which says so
                const Changing changing(self->changes_);
                if (self->takesSelection(run, scope) && self->sources_.find(id)) self->selectCollection(id);
                continue;
            }
        }

        const auto placeholder = std::make_shared<const MailCollection>(OpenSources::placeholder(scope->url));
        if (self->takesSelection(run, scope)) self->preferredOpeningID_ = placeholder->id;
        const std::int64_t room = self->sources_.indexRoom(scope->url);
        if (room < 1) {
            notices.push_back(self->preferences_.text(Texts::freeIndexMemory));
            continue;
        }
        self->sources_.begin(placeholder->id);

        const auto delivery = self->deliveryOf(placeholder, scope, run.token);
        const MailCore::IndexLimits limits(MailCore::Limits::messages, room);
        auto indexed = co_await ArchiveWork::index(scope, limits, run.token, delivery).outcome();

        const Changing changing(self->changes_);
        delivery->flush();
        if (run.token->isStopped()) break;
        if (indexed) {
            MailCollection result = std::move(indexed).take();
            result.id = placeholder->id;
            self->finishIndexing(std::move(result), scope);
            const MailCollection* const listed = self->sources_.find(placeholder->id);
            if (listed && listed->entries.empty() && listed->indexLimitReached)
                notices.push_back(self->preferences_.text(Texts::freeIndexMemory));
        } else {
            self->sources_.interrupt();
            const Phrase text = failureText(indexed.error(), {.source = scope->url}).text;
            notices.push_back(nameOf(scope->url) + ": " + self->preferences_.text(text));
        }
    }
    self->finishRun(run, std::move(notices));
}

std::shared_ptr<IndexDelivery> AppModel::deliveryOf(std::shared_ptr<const MailCollection> placeholder,
                                                    MailFileScope scope, CancellationToken token) {
    return IndexDelivery::create([weak = weak_from_this(), placeholder = std::move(placeholder),
                                  scope = std::move(scope),
                                  token = std::move(token)](MailCore::EntryList entries) {
        const auto self = weak.lock();
        if (self && self->token_ == token && !token->isStopped())
            self->receiveBatch(std::move(entries), *placeholder, scope);
    });
}

void AppModel::receiveBatch(MailCore::EntryList entries, const MailCollection& placeholder,
                            const MailFileScope& scope) {
    const Changing changing(changes_);
    const bool staleShown = showsOther(placeholder.id, placeholder.url);
    // A placeholder that was listed and is gone has been closed, which stopped the run: no batch gets here.
    const auto first = entries.empty() ? std::nullopt : std::optional(entries.front()->id);
    progress.set(sources_.add(entries, placeholder, scope));

    if (staleShown || preferredOpeningID_ == placeholder.id)
        presentCollection(placeholder.id, first);
    else if (*selectedCollection == placeholder.id)
        search_.refresh();
    returnTo(entries, placeholder);
}

// Returns to the message that was selected before its source was opened again, once it arrives. If people
// have chosen another one meanwhile, they stay there.
void AppModel::returnTo(const MailCore::EntryList& arrived, const MailCollection& collection) {
    if (!return_ || !(return_->source == collection.url) || *selectedCollection != collection.id) return;
    if (!return_->request) return_->request = *readRequest;
    if (return_->request != *readRequest) return return_.reset();
    const MailCore::MessageEntry& wanted = *return_->entry;
    const auto found = std::ranges::find_if(arrived, [&](const MailCore::SharedEntry& entry) {
        return entry->subject == wanted.subject && entry->from == wanted.from && entry->date == wanted.date &&
               entry->length == wanted.length;
    });
    if (found == arrived.end()) return;
    return_.reset();
    select((*found)->id);
}

// Whether the selected collection is another, older copy of the same source.
bool AppModel::showsOther(CollectionID id, const URL& url) const {
    const MailCollection* const shown = active();
    return shown && shown->id != id && shown->url == url;
}

void AppModel::finishIndexing(MailCollection result, const MailFileScope& scope) {
    const CollectionID id = result.id;
    const auto first = result.entries.empty() ? std::nullopt : std::optional(result.entries.front()->id);
    const bool staleShown = showsOther(id, result.url);
    const MailCore::EntryList arrived = sources_.finish(std::move(result), scope); // rather than in batches
    if (*selectedCollection == id) search_.refresh();
    if (staleShown || preferredOpeningID_ == id) presentCollection(id, first);
    if (const MailCollection* const listed = sources_.find(id)) returnTo(arrived, *listed);
}

void AppModel::finishRun(const Run& run, std::vector<std::string> notices) {
    if (token_ != run.token) return;
    const Changing changing(changes_);
    busy.set(false);
    preferredOpeningID_.reset();
    return_.reset();
    sources_.releaseUnusedScopes();
    if (run.left > 0) {
        const std::string text = preferences_.text(run.left == 1 ? Texts::fileLeft : Texts::filesLeft);
        notices.push_back(fmt::format(fmt::runtime(text), run.left, mostFiles));
    }
    if (run.token->isStopped() || notices.empty()) return;
    dismissError();
    error.set(joined(notices));
}

void AppModel::cancel() {
    const Changing changing(changes_);
    if (token_) token_->stop();
    sources_.interrupt();
    preferredOpeningID_.reset();
    return_.reset();
    busy.set(false);
}

void AppModel::chooseFiles() {
    choose(shared_from_this(), OpenPanel::Kind::files);
}

void AppModel::chooseFolder() {
    choose(shared_from_this(), OpenPanel::Kind::folder);
}

Task AppModel::choose(std::shared_ptr<AppModel> self, OpenPanel::Kind kind) {
    const Preferences& preferences = self->preferences_;
    OpenPanel panel{.kind = kind,
                    .title = preferences.text(Texts::openTitle),
                    .accept = preferences.text(Texts::openPrompt),
                    .cancel = preferences.text(Texts::cancel),
                    .filterName = preferences.text(Texts::mailFiles),
                    .everyName = preferences.text(Texts::allFiles),
                    .extensions = {},
                    .names = {std::string(MailCore::SourceKinds::mailboxFile)}};
    for (const MailCore::SourceKind& source : MailCore::SourceKinds::all)
        panel.extensions.emplace_back(source.extension);
    std::vector<URL> chosen = co_await self->panels_.open(std::move(panel));
    self->open(chosen);
}

void AppModel::selectCollection(std::optional<CollectionID> id) {
    const Changing changing(changes_);
    std::optional<EntryID> wanted;
    if (const MailCollection* const collection = id ? sources_.find(*id) : nullptr) {
        wanted = sources_.remembered(*id);
        if (!wanted && !collection->entries.empty()) wanted = collection->entries.front()->id;
    }
    presentCollection(id, wanted);
}

// Makes a collection current; the one the open run would have shown no longer takes the selection.
void AppModel::presentCollection(std::optional<CollectionID> id, std::optional<EntryID> entry) {
    preferredOpeningID_.reset();
    selectedCollection.set(id);
    capture.set(std::nullopt);
    search_.list(id);
    select(entry);
}

void AppModel::closeCollection(CollectionID id) {
    if (!sources_.find(id)) return;
    const Changing changing(changes_);
    if (sources_.isIndexing(id)) cancel();
    const bool wasSelected = *selectedCollection == id;
    const std::optional<CollectionID> neighbour = sources_.close(id);
    if (wasSelected) selectCollection(neighbour);
}

void AppModel::closeAll() {
    const Changing changing(changes_);
    cancel();
    dismissError();
    progress.set(0);
    sources_.closeAll();
    capture.set(std::nullopt);
    leaveSelection();
}

} // namespace TesselMail
