#pragma once

#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/UUID.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "TesselMail/Model/ArchiveWork.h"
#include "TesselMail/Model/Cancellation.h"
#include "TesselMail/Model/FailureText.h"
#include "TesselMail/Model/Preferences.h"
#include "TesselMail/Model/Published.h"
#include "TesselMail/Model/ScopedMailFile.h"
#include "TesselMail/Platform/Desktop.h"
#include "TesselMail/Platform/FilePanels.h"
#include "TesselMail/Platform/Task.h"

#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TesselMail {

/// The state of the application: what is open, what is selected and what is shown. Views read its published
/// fields and call its operations. Engine work goes through ArchiveWork; its tasks keep the model alive until
/// they end. Interface thread only.
class AppModel : public std::enable_shared_from_this<AppModel> {
public:
    using CollectionID = MailCore::UUID;
    using EntryID = std::int64_t;
    template <typename Value>
    using Field = Published<Value, AppModel>;

    /// All outlive the model.
    static std::shared_ptr<AppModel> create(Preferences& preferences, FilePanels& panels, Desktop& desktop);
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;
    ~AppModel();

    Preferences& preferences() noexcept { return preferences_; }

private:
    Changes changes_; // before the fields, which refer to it

public:
    Field<std::vector<MailCore::MailCollection>> collections{changes_}; // in opening order
    Field<std::optional<CollectionID>> selectedCollection{changes_};
    Field<std::optional<EntryID>> selectedEntry{changes_};
    Field<std::optional<MailCore::MailtoCapture>> capture{changes_};         // shown instead of a message
    Field<std::shared_ptr<const MailCore::MailMessage>> message{changes_};   // on show
    Field<std::shared_ptr<const MailCore::RenderedMail>> rendered{changes_}; // of it
    Field<std::optional<std::string>> error{changes_};                       // a sentence for people
    Field<Remedy> remedy{changes_, Remedy::none};                            // for what `error` tells
    Field<std::optional<Failure>> readFailure{changes_}; // why the selected message is not on show
    Field<bool> busy{changes_, false};                   // an open run is in progress
    Field<bool> reading{changes_, false};                // a message is being read
    Field<std::size_t> progress{changes_, 0U};           // entries so far in the collection being indexed
    Field<std::string> query{changes_};                  // the search text as typed
    Field<bool> newestFirst{changes_, true};
    Field<std::int64_t> searchUnreadable{changes_, 0};        // messages the last search could not read
    Field<bool> searching{changes_, false};                   // for a text
    Field<ArchiveWork::SharedList> filteredEntries{changes_}; // never null
    Field<bool> showDetails{changes_, false};                 // all headers rather than the summary
    Field<MailCore::UUID> selectionVersion{changes_, MailCore::UUID::random()}; // of what is shown
    Field<MailCore::UUID> readRequest{changes_, MailCore::UUID::random()};      // of every selection
    Field<bool> readerFailed{changes_, false}; // the reading view could not show the message
    double mailListWidth = 305.0;              // of the list's column, in points

    // Opening and closing

    /// Opens the first 20 distinct files and folders among `urls`; a run in progress is stopped. The first of
    /// them that opens is shown. A mailto: link among the first 20 takes the place of all of them. A notice
    /// tells how many files were left, `left` of which the caller had kept back.
    void open(const std::vector<MailCore::URL>& urls, std::size_t left = 0);
    /// Opens again the changed source that `error` or, without one, `readFailure` tells of. The message that
    /// is selected in it stays so when it is still there.
    void reopenSource();
    /// Shows what the mailto: link `url` carries instead of a message, and brings the window to the front.
    /// The collections stay open. A link that cannot be read changes nothing but `error`.
    void receive(const MailCore::URL& url);
    /// The same for the text of a link that is no address by the letter.
    void receive(std::string_view link);
    /// Puts the captured link away and goes back to the collection it took the place of.
    void closeCapture();
    /// Lets people choose what to open.
    void chooseFiles();
    void chooseFolder();
    /// Stops the open run; what has arrived stays listed.
    void cancel();
    void selectCollection(std::optional<CollectionID> id);
    void closeCollection(CollectionID id);
    void closeAll();

    /// The selected collection, or null.
    const MailCore::MailCollection* active() const noexcept;
    /// What the list shows: the selected collection's entries in order of display, or as they are stored
    /// until they have been ordered.
    ArchiveWork::SharedList entries() const;
    /// Whether that list is still being made: empty, it is no answer yet. `filteredEntries` or `error`
    /// changes when it is done, `collections` when the selected one has been indexed.
    bool listPending() const noexcept;
    /// Changes what is looked for in the selected collection; the list follows when typing has paused.
    void setQuery(std::string query);
    void setNewestFirst(bool newestFirst);

    // Selection and reading

    /// Shows an entry of the selected collection, or nothing.
    void select(std::optional<EntryID> id);
    /// Emitted first whenever an entry is asked for, also the one on show: a link's panel closes.
    sigc::signal<void()>& signalSelecting() noexcept { return selecting_; }
    /// The selected entry, or null.
    MailCore::SharedEntry entry() const;
    /// Whether what is shown is the whole and current message of the selection.
    bool currentMessageReady() const noexcept;
    /// Whether the selected entry is larger than what is read.
    bool selectionTooLarge() const;
    void setShowDetails(bool show);
    /// The reading view reports that it could not show the content tagged `identity`.
    void readingViewFailed(std::optional<MailCore::UUID> identity, const Text& explanation);
    void dismissError();
    /// Makes this application the one that opens mail links; whether that worked.
    Later<bool> becomeMailHandler() { return desktop_.becomeMailHandler(); }

    /// Opens an attached message as a collection of its own, held in memory.
    void previewAttachment(MailCore::UUID attachment);
    void saveAttachment(MailCore::UUID attachment);
    bool canExportOriginal() const;
    void exportOriginal();

    /// One sentence for any failure, in the interface's language.
    std::string errorText(const std::exception_ptr& error) const;

private:
    enum class Search { restart, refresh };

    AppModel(Preferences& preferences, FilePanels& panels, Desktop& desktop);

    struct Run;

    /// The message to go back to when its source has been opened again.
    struct Return {
        MailCore::URL source;
        MailCore::SharedEntry entry;
        std::optional<MailCore::UUID> request; // the selection made instead of it, until it arrives
    };

    /// Where an attachment was found. Its own identity is a new one each time its message is read.
    struct AttachmentPlace {
        CollectionID collection;
        EntryID entry = 0;
        std::size_t position = 0;
        bool operator==(const AttachmentPlace&) const = default;
    };
    /// An attached message opened from memory.
    struct MemoryMessage {
        ArchiveWork::ReadMessage content;
        std::shared_ptr<const MailCore::Bytes> original; // null when its producer had decoded it
        AttachmentPlace place;
    };
    using SharedAttachment = std::shared_ptr<const MailCore::MailAttachment>;

    static Task choose(std::shared_ptr<AppModel> self, OpenPanel::Kind kind);
    static Task openAll(std::shared_ptr<AppModel> self, Run run);
    static Task readEntry(std::shared_ptr<AppModel> self, CollectionID collection,
                          MailCore::SharedEntry entry, MailFileScope scope, CancellationToken token);
    static Task readAttachment(std::shared_ptr<AppModel> self, SharedAttachment attachment,
                               AttachmentPlace place);
    static Task storeAttachment(std::shared_ptr<AppModel> self, SharedAttachment attachment);
    static Task storeOriginal(std::shared_ptr<AppModel> self, MailCore::SharedEntry entry,
                              CollectionID collection);
    static Task search(std::shared_ptr<AppModel> self, Search kind, CancellationToken token,
                       CollectionID collection, std::string text);

    std::shared_ptr<IndexDelivery> deliveryOf(std::shared_ptr<const MailCore::MailCollection> placeholder,
                                              MailFileScope scope, CancellationToken token);
    std::int64_t indexRoom(const MailCore::URL& opening) const;
    void receiveBatch(MailCore::EntryList entries, const MailCore::MailCollection& placeholder,
                      const MailFileScope& scope);
    bool showsOther(CollectionID id, const MailCore::URL& url) const;
    void finishIndexing(MailCore::MailCollection result, const MailFileScope& scope);
    void interruptIndexing(std::optional<CollectionID> id);
    bool takesSelection(const Run& run, const MailFileScope& scope) const;
    void returnTo(const MailCore::EntryList& arrived, const MailCore::MailCollection& collection);
    void finishRun(const Run& run, std::vector<std::string> notices);
    void presentCollection(std::optional<CollectionID> id, std::optional<EntryID> entry);
    void removeCollections(const MailCore::URL& url);
    void removeCollection(std::size_t position);
    void releaseUnusedScopes();
    void scheduleSearch(Search kind);
    void publishList(ArchiveWork::SharedList list);
    void publishResults(ArchiveWork::SearchResults results, CollectionID collection);
    void clearPresentation();
    void show(ArchiveWork::ReadMessage content, CollectionID collection, EntryID entry);
    void addAttachedMessage(const SharedAttachment& attachment, AttachmentPlace place,
                            ArchiveWork::ReadMessage content);
    AttachmentPlace placeOf(const MailCore::MailAttachment& attachment) const;
    SharedAttachment shownAttachment(MailCore::UUID id) const;
    Outcome<Done> checkDestination(const MailCore::URL& destination) const;
    Failure fail(const std::exception_ptr& error, const FailedWork& work = {});
    Failure fail(const std::exception_ptr& error, const FailedWork& work, const MailCore::URL& collection);

    const MailCore::MailCollection* find(CollectionID id) const noexcept;
    MailCore::MailCollection* edit(CollectionID id);
    MailFileScope scopeOf(const MailCore::URL& url) const;

    Preferences& preferences_;
    FilePanels& panels_;
    Desktop& desktop_;

    sigc::signal<void()> selecting_;
    std::map<CollectionID, MemoryMessage> memoryMessages_;
    std::map<CollectionID, EntryID> rememberedSelections_;
    std::optional<CollectionID> beforeCapture_;     // selected when the captured link arrived
    std::optional<CollectionID> orderedCollection_; // whose entries filteredEntries holds
    std::optional<CollectionID> displayedCollection_;
    std::optional<EntryID> displayedEntry_;
    CancellationToken token_;       // of the open run
    CancellationToken readToken_;   // of the read for the selection
    CancellationToken searchToken_; // of the search that is pending or under way
    bool searchPending_ = false;
    bool searchRefresh_ = false; // entries arrived while one was pending
    std::string displayedQuery_; // the trimmed text that filteredEntries was last started for
    std::map<MailCore::URL, MailFileScope> scopes_;
    std::optional<CollectionID> openingID_;          // placeholder being indexed
    std::optional<CollectionID> preferredOpeningID_; // placeholder that takes the selection
    std::optional<MailCore::URL> changedSource_;     // of which `error` tells
    std::optional<Return> return_;
};

} // namespace TesselMail
