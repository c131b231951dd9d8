#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/EntryRows.h"

#include <gtkmm.h>

namespace TesselMail {

/// The message list: shows the model's entries and reports the selection. Row objects exist only for what is
/// near the screen. `model` outlives it.
class MessageList : public Gtk::Box {
public:
    explicit MessageList(AppModel& model);

    Adwaita::HeaderBar& header() noexcept { return header_; }
    /// Emitted when people ask for a message by clicking its row or pressing Return on it.
    sigc::signal<void()>& signalChosen() noexcept { return chosen_; }
    void focusList() { list_.grab_focus(); }
    void focusSearch() { search_.grab_focus(); }

private:
    void showTexts();
    void showEntries();
    void showSelection();
    bool selectionInView() const;
    void bringIntoView(guint position);
    bool scrollWhenLaidOut();
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
    Gtk::ListView list_;
    Adwaita::StatusPage empty_{"mail-read-symbolic"};
    Glib::RefPtr<EntryRows> rows_;
    Glib::RefPtr<Gtk::SingleSelection> selection_;
    sigc::signal<void()> chosen_;
    std::optional<AppModel::CollectionID> shownCollection_;
    bool updating_ = false;                    // the selection changes because the model did
    guint wanted_ = GTK_INVALID_LIST_POSITION; // the row to bring into view once rows are laid out
    int framesUntilLaidOut_ = 0;
};

} // namespace TesselMail
