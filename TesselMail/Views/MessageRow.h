#pragma once

#include "MailCore/Model/MessageEntry.h"
#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

namespace TesselMail {

/// One row of the message list: sender, subject and date, each on a line of fixed height, so that all rows
/// are equally tall whatever is written in them.
class MessageRow : public Gtk::Box {
public:
    MessageRow();
    /// Emitted when the row is clicked, whether or not that changes the selection.
    sigc::signal<void()>& signalClicked() noexcept { return clicked_; }
    void show(const MailCore::MessageEntry& entry, const Preferences& preferences);

private:
    Gtk::Inscription sender_;
    Gtk::Inscription subject_;
    Gtk::Inscription date_;
    sigc::signal<void()> clicked_;
};

} // namespace TesselMail
