#pragma once

#include "MailCore/Model/MessageEntry.h"
#include "TesselMail/Model/Preferences.h"

#include <gtkmm.h>

#include <string>

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

    /// As people read it, with marks that keep its direction to itself.
    const std::string& shownSender() const noexcept { return sender_.text(); }
    const std::string& shownSubject() const noexcept { return subject_.text(); }
    const std::string& shownDate() const noexcept { return date_.text(); }

private:
    // A text on one line as large as the style says, cut at its end. A list makes two hundred rows at once:
    // lines that measured their fonts, and were laid out before they are drawn, would hold the window for
    // longer than a frame.
    class Line : public Gtk::Widget {
    public:
        explicit Line(Pango::Alignment alignment = Pango::Alignment::LEFT);
        void setText(const std::string& text);
        const std::string& text() const noexcept { return text_; }

    protected:
        void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                           int& minimumBaseline, int& naturalBaseline) const override;
        void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;

    private:
        Pango::Alignment alignment_;
        std::string text_;
    };

    void showTexts();
    bool showTooltip(const Glib::RefPtr<Gtk::Tooltip>& tooltip) const;

    Preferences& preferences_;
    MailCore::SharedEntry entry_;
    Line sender_;
    Line subject_;
    Line date_{Pango::Alignment::RIGHT};
    sigc::signal<void()> clicked_;
};

} // namespace TesselMail
