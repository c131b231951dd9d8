#pragma once

#include "MailCore/Model/MessageEntry.h"
#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

namespace TesselMail {

/// One row of the message list: the sender's name and a short date, and the subject, on lines of fixed
/// height, so that all rows are equally tall whatever is written in them. Who points at it sees all three
/// whole.
class MessageRow : public Gtk::Box {
public:
    /// `preferences` outlive the row.
    explicit MessageRow(Preferences& preferences);
    /// Emitted when the row is clicked, whether or not that changes the selection.
    sigc::signal<void()>& signalClicked() noexcept { return clicked_; }
    void show(MailCore::SharedEntry entry);
    /// Shows the same once more: another day has begun.
    void refresh() { showTexts(); }
    const MailCore::SharedEntry& entry() const noexcept { return entry_; }

private:
    void showTexts();
    bool showTooltip(const Glib::RefPtr<Gtk::Tooltip>& tooltip) const;

    Preferences& preferences_;
    MailCore::SharedEntry entry_;
    Gtk::Inscription sender_;
    Gtk::Inscription subject_;
    Gtk::Inscription date_;
    sigc::signal<void()> clicked_;
};

} // namespace TesselMail
