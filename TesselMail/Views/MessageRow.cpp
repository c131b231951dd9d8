#include "TesselMail/Views/MessageRow.h"

#include "MailCore/Dates/MailDate.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/SystemLocale.h"

namespace TesselMail {
namespace {

constexpr std::size_t longestShown = 200; // characters; more never fits a row

void setUpLine(Gtk::Inscription& line) {
    line.set_min_lines(1);
    line.set_nat_lines(1);
    line.set_min_chars(8);
    line.set_nat_chars(20);
    line.set_xalign(0);
    line.set_hexpand(true);
    line.set_text_overflow(Gtk::Inscription::Overflow::ELLIPSIZE_END);
}

} // namespace

MessageRow::MessageRow() : Gtk::Box(Gtk::Orientation::VERTICAL, 2) {
    add_css_class("message-row");
    for (Gtk::Inscription* const line : {&sender_, &subject_, &date_}) {
        setUpLine(*line);
        append(*line);
    }
    sender_.add_css_class("message-sender");
    subject_.add_css_class("message-subject");
    date_.add_css_class("message-date");
    const auto click = Gtk::GestureClick::create();
    click->signal_released().connect([this](int, double, double) { clicked_.emit(); });
    add_controller(click);
}

void MessageRow::show(const MailCore::MessageEntry& entry, const Preferences& preferences) {
    const std::string sender =
        entry.from.empty() ? preferences.text(Texts::noSender) : displayed(entry.from, longestShown);
    const std::string subject =
        entry.subject.empty() ? preferences.text(Texts::noSubject) : displayed(entry.subject, longestShown);
    const std::string date =
        entry.date.empty() ? ""
                           : displayed(MailCore::MailDate::display(entry.date, systemLocale()), longestShown);
    sender_.set_text(sender);
    subject_.set_text(subject);
    date_.set_text(date);
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   (sender + ", " + subject + ", " + date).c_str(), -1);
}

} // namespace TesselMail
