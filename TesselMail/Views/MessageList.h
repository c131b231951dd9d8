#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/EntryRows.h"
#include "TesselMail/Views/OneTabStop.h"

#include <gtkmm.h>

namespace TesselMail {

/// The message list: shows the model's entries and reports the selection. Row objects exist only for what is
/// near the screen. `model` outlives it.
class MessageList : public Gtk::Box {
public:
    explicit MessageList(AppModel& model);
    ~MessageList() override { clock_.disconnect(); }

    Adwaita::HeaderBar& header() noexcept { return header_; }
    /// Emitted when people click a message, also the one that is selected.
    sigc::signal<void()>& signalChosen() noexcept { return chosen_; }
    /// Emitted when people press Return on a message to read it.
    sigc::signal<void()>& signalEntered() noexcept { return entered_; }
    /// Gives the focus to the selected row, or else to the list.
    void focusList();
    /// With what was looked for selected, to be typed over.
    void focusSearch() {
        search_.grab_focus();
        search_.select_region(0, -1);
    }
    /// Selects the next or the previous message of the list.
    void selectNext() { selectBeside(1); }
    void selectPrevious() { selectBeside(-1); }

private:
    void showTexts();
    void selectBeside(int step);
    void showEntries();
    void showSelection();
    bool selectionInView() const;
    void bringIntoView(guint position);
    bool scrollWhenLaidOut();
    bool focusSelected();
    bool showNewDay();
    void showTitle();
    void showNotice();
    void showSearch();
    void changeQuery();
    void leaveSearch();
    void enterResults();
    void choose(guint position);
    void showOrder();
    void setUpRow(const Glib::RefPtr<Gtk::ListItem>& item);
    void bindRow(const Glib::RefPtr<Gtk::ListItem>& item);
    void select();
    void activate(guint position);
    void changeOrder();
    guint selectedPosition() const;

    AppModel& model_;
    Adwaita::HeaderBar header_;
    Gtk::ToggleButton order_;
    Gtk::SearchEntry search_;
    Gtk::Label searching_;
    Gtk::Revealer noticeRevealer_;
    Gtk::Label notice_;
    Gtk::Stack stack_;
    Gtk::ScrolledWindow scroller_;
    OneTabStop<Gtk::ListView> list_;
    Adwaita::StatusPage empty_{"mail-read-symbolic"};
    Glib::RefPtr<EntryRows> rows_;
    Glib::RefPtr<Gtk::SingleSelection> selection_;
    sigc::connection clock_;
    Glib::Date today_;
    sigc::signal<void()> chosen_;
    sigc::signal<void()> entered_;
    std::optional<AppModel::CollectionID> shownCollection_;
    std::string shownQuery_;                   // whose hits are listed
    bool updating_ = false;                    // the selection changes because the model did
    guint wanted_ = GTK_INVALID_LIST_POSITION; // the row to bring into view once rows are laid out
    bool awaitsFocus_ = false;                 // that row should get the focus then,
    const Gtk::Widget* focusBefore_ = nullptr; // unless it has gone elsewhere; only ever compared
    int framesUntilLaidOut_ = 0;
};

} // namespace TesselMail
