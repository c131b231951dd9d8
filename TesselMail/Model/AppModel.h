#pragma once

#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Platform/UUID.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "TesselMail/Model/ArchiveWork.h"
#include "TesselMail/Model/Cancellation.h"
#include "TesselMail/Model/FailureText.h"
#include "TesselMail/Model/ListSearch.h"
#include "TesselMail/Model/OpenSources.h"
#include "TesselMail/Model/Preferences.h"
#include "TesselMail/Model/Published.h"
#include "TesselMail/Model/ScopedMailFile.h"
#include "TesselMail/Platform/Desktop.h"
#include "TesselMail/Platform/FilePanels.h"
#include "TesselMail/Platform/Task.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace TesselMail {

/// The state of the application and the one face of it that views know: they read its published fields and
/// call its operations. What is open is in OpenSources and what the list shows in ListSearch; here is what is
/// selected and shown, and the run that opens files. Engine work goes through ArchiveWork; its tasks keep the
/// model alive until they end. Interface thread only.
class AppModel : public std::enable_shared_from_this<AppModel> {
public:
    /// How many files and folders one request opens.
    static constexpr std::size_t mostFiles = 20;

    using CollectionID = OpenSources::CollectionID;
    using EntryID = OpenSources::EntryID;
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
    OpenSources sources_{changes_};
    ListSearch search_{changes_, sources_, [this](const std::exception_ptr& error) { fail(error); }};

public:
    // Of what is open and listed
    OpenSources::Field<std::vector<MailCore::MailCollection>>& collections = sources_.collections;
    ListSearch::Field<std::string>& query = search_.query;
    ListSearch::Field<bool>& newestFirst = search_.newestFirst;
    ListSearch::Field<std::int64_t>& searchUnreadable = search_.searchUnreadable;
    ListSearch::Field<bool>& searching = search_.searching;
    ListSearch::Field<ArchiveWork::SharedList>& filteredEntries = search_.filteredEntries;

    // Of what is selected and shown
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
    Field<bool> showDetails{changes_, false};            // all headers rather than the summary
    Field<MailCore::UUID> selectionVersion{changes_, MailCore::UUID::random()}; // of what is shown
    Field<MailCore::UUID> readRequest{changes_, MailCore::UUID::random()};      // of every selection
    Field<bool> readerFailed{changes_, false}; // the reading view could not show the message
    double mailListWidth = 305.0;              // of the list's column, in points

    // Opening and closing

    /// Opens the first `mostFiles` distinct files and folders among `urls`; a run in progress is stopped. The
    /// first of them that opens is shown. A mailto: link among the first `mostFiles` takes the place of all
    /// of them. A notice says how many files were left out; `left` counts those the caller kept back.
    void open(const std::vector<MailCore::URL>& urls, std::size_t left = 0);
    /// Opens the changed source again that `error` tells of or, without an error, `readFailure`. The message
    /// selected in it stays selected if it is still there.
    void reopenSource();
    /// Shows what the mailto: link `url` carries instead of a message, and brings the window to the front.
    /// The collections stay open. A link that cannot be read changes nothing but `error`.
    void receive(const MailCore::URL& url);
    /// The same for the text of a link that is not a well-formed address.
    void receive(std::string_view link);
    /// Puts the captured link away and returns to the collection it replaced.
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
    ArchiveWork::SharedList entries() const { return search_.entries(); }
    /// Whether that list is still being made, so that an empty one is no answer yet. `filteredEntries` or
    /// `error` changes when it is done, `collections` when the selected one has been indexed.
    bool listPending() const noexcept;
    /// Changes what is looked for in the selected collection; the list follows when typing has paused.
    void setQuery(std::string query) { search_.setQuery(std::move(query)); }
    void setNewestFirst(bool newestFirst) { search_.setNewestFirst(newestFirst); }

    // Selection and reading

    /// Shows an entry of the selected collection, or nothing.
    void select(std::optional<EntryID> id);
    /// Emitted first whenever an entry is asked for, even the one on show, so that a link's panel closes.
    sigc::signal<void()>& signalSelecting() noexcept { return selecting_; }
    /// The selected entry, or null.
    MailCore::SharedEntry entry() const;
    /// Whether what is shown is the whole and current message of the selection.
    bool currentMessageReady() const noexcept;
    /// Whether the selected entry is larger than what is read.
    bool selectionTooLarge() const;
    void setShowDetails(bool show);
    /// The reading view reports that it could not show the content tagged `identity`.
    void readingViewFailed(std::optional<MailCore::UUID> identity, const Phrase& explanation);
    void dismissError();
    /// Makes this application the one that opens mail links. The answer tells whether that worked.
    Later<bool> becomeMailHandler() { return desktop_.becomeMailHandler(); }
    /// Emitted with the place of what was saved or exported.
    sigc::signal<void(const MailCore::URL&)>& signalSaved() noexcept { return saved_; }
    /// Shows a saved file in its folder. The answer tells whether the desktop could.
    Later<bool> showInFolder(const MailCore::URL& file) { return desktop_.showInFolder(file); }

    /// Opens an attached message as a collection of its own, held in memory.
    void previewAttachment(MailCore::UUID attachment);
    void saveAttachment(MailCore::UUID attachment);
    bool canExportOriginal() const;
    void exportOriginal();

    /// One sentence for any failure, in the interface's language.
    std::string errorText(const std::exception_ptr& error) const;

private:
    AppModel(Preferences& preferences, FilePanels& panels, Desktop& desktop);

    struct Run;

    // The message to go back to when its source has been opened again.
    struct Return {
        MailCore::URL source;
        MailCore::SharedEntry entry;
        std::optional<MailCore::UUID> request; // the selection made instead of it, until it arrives
    };

    using AttachmentPlace = OpenSources::AttachmentPlace;
    using SharedAttachment = OpenSources::SharedAttachment;

    static Task choose(std::shared_ptr<AppModel> self, OpenPanel::Kind kind);
    static Task openAll(std::shared_ptr<AppModel> self, Run run);
    static Task readEntry(std::shared_ptr<AppModel> self, CollectionID collection,
                          MailCore::SharedEntry entry, MailFileScope scope, CancellationToken token);
    static Task readAttachment(std::shared_ptr<AppModel> self, SharedAttachment attachment,
                               AttachmentPlace place);
    static Task saveAttachmentFile(std::shared_ptr<AppModel> self, SharedAttachment attachment);
    static Task saveOriginalFile(std::shared_ptr<AppModel> self, MailCore::SharedEntry entry,
                                 CollectionID collection);

    std::shared_ptr<IndexDelivery> deliveryOf(std::shared_ptr<const MailCore::MailCollection> placeholder,
                                              MailFileScope scope, CancellationToken token);
    void receiveBatch(MailCore::EntryList entries, const MailCore::MailCollection& placeholder,
                      const MailFileScope& scope);
    bool showsOther(CollectionID id, const MailCore::URL& url) const;
    void finishIndexing(MailCore::MailCollection result, const MailFileScope& scope);
    bool takesSelection(const Run& run, const MailFileScope& scope) const;
    void returnTo(const MailCore::EntryList& arrived, const MailCore::MailCollection& collection);
    void finishRun(const Run& run, std::vector<std::string> notices);
    void presentCollection(std::optional<CollectionID> id, std::optional<EntryID> entry);
    void leaveSelection();
    void clearPresentation();
    void show(ArchiveWork::ReadMessage content, CollectionID collection, EntryID entry);
    AttachmentPlace placeOf(const MailCore::MailAttachment& attachment) const;
    SharedAttachment shownAttachment(MailCore::UUID id) const;
    Outcome<Done> checkDestination(const MailCore::URL& destination) const;
    Failure fail(const std::exception_ptr& error, const FailedWork& work = {});
    Failure fail(const std::exception_ptr& error, const FailedWork& work, const MailCore::URL& collection);

    Preferences& preferences_;
    FilePanels& panels_;
    Desktop& desktop_;

    sigc::signal<void()> selecting_;
    sigc::signal<void(const MailCore::URL&)> saved_;
    std::optional<CollectionID> beforeCapture_; // selected when the captured link arrived
    std::optional<CollectionID> displayedCollection_;
    std::optional<EntryID> displayedEntry_;
    CancellationToken token_;                        // of the open run
    CancellationToken readToken_;                    // of the read for the selection
    std::optional<CollectionID> preferredOpeningID_; // placeholder that takes the selection
    std::optional<MailCore::URL> changedSource_;     // of which `error` tells
    std::optional<Return> return_;
};

} // namespace TesselMail
