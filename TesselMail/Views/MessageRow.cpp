#include "TesselMail/Views/MessageRow.h"

#include "MailCore/Dates/BriefDate.h"
#include "MailCore/Dates/MailDate.h"
#include "MailCore/Model/SenderName.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/SystemLocale.h"

#include <utility>

namespace TesselMail {
namespace {

constexpr std::size_t longestShown = 200; // characters; more never fits a row

std::string wholeDate(const MailCore::MessageEntry& entry) {
    if (entry.date.empty()) return {};
    return displayed(MailCore::MailDate::display(entry.date, systemLocale()), longestShown);
}

// A paragraph from left to right, whatever the language of the text: the toolkit turns the alignment of the
// others around.
std::string atItsEnd(const std::string& text) {
    return "\u200e\u2068" + text + "\u2069";
}

// By this computer's clock: a list is looked through from here and now.
std::string briefDate(double seconds) {
    static const MailCore::BriefDate dates(systemLocale());
    return dates.text(seconds, static_cast<double>(g_get_real_time()) / G_USEC_PER_SEC);
}

} // namespace

MessageRow::Line::Line(Pango::Alignment alignment)
    : Glib::ObjectBase("TesselMessageLine"), alignment_(alignment) {
    set_overflow(Gtk::Overflow::HIDDEN);
}

void MessageRow::Line::setText(const std::string& text) {
    if (text_ == text) return;
    text_ = text;
    queue_draw();
}

// Nothing but what the style adds.
void MessageRow::Line::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural, int& minimumBaseline,
                                     int& naturalBaseline) const {
    minimum = natural = 0;
    minimumBaseline = naturalBaseline = -1;
}

void MessageRow::Line::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
    const auto layout = create_pango_layout(alignment_ == Pango::Alignment::RIGHT ? atItsEnd(text_) : text_);
    layout->set_single_paragraph_mode(true);
    layout->set_width(get_width() * PANGO_SCALE);
    layout->set_ellipsize(Pango::EllipsizeMode::END);
    const bool mirrored = get_direction() == Gtk::TextDirection::RTL;
    const bool right = (alignment_ == Pango::Alignment::RIGHT) != mirrored;
    layout->set_alignment(right ? Pango::Alignment::RIGHT : Pango::Alignment::LEFT);
    int width = 0;
    int height = 0;
    layout->get_pixel_size(width, height);
    snapshot->render_layout(get_style_context(), 0, (get_height() - height) / 2, layout);
}

MessageRow::MessageRow(Preferences& preferences)
    : Gtk::Box(Gtk::Orientation::VERTICAL, 2), preferences_(preferences) {
    add_css_class("message-row");
    for (Line* const line : {&sender_, &subject_}) line->set_hexpand(true);
    auto* const first = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
    first->append(sender_);
    first->append(date_);
    append(*first);
    append(subject_);
    sender_.add_css_class("message-sender");
    subject_.add_css_class("message-subject");
    date_.add_css_class("message-date");
    const auto click = Gtk::GestureClick::create();
    click->signal_released().connect([this](int, double, double) { clicked_.emit(); });
    add_controller(click);
    set_has_tooltip(true);
    signal_query_tooltip().connect(
        [this](int, int, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip) { return showTooltip(tooltip); },
        false);
    preferences_.signalChanged().connect(sigc::mem_fun(*this, &MessageRow::showTexts));
}

void MessageRow::show(MailCore::SharedEntry entry) {
    entry_ = std::move(entry);
    showTexts();
}

// The name is put on the list's own widget around this one, which is what a screen reader comes to.
void MessageRow::showTexts() {
    if (!entry_) return;
    const std::string sender = entry_->from.empty()
                                   ? preferences_.text(Texts::noSender)
                                   : displayed(MailCore::senderName(entry_->from.view()), longestShown);
    const std::string subject = entry_->subject.empty() ? preferences_.text(Texts::noSubject)
                                                        : displayed(entry_->subject, longestShown);
    const std::string date = wholeDate(*entry_);
    sender_.setText(sender);
    subject_.setText(subject);
    const std::string brief = entry_->timestamp ? briefDate(*entry_->timestamp) : std::string();
    const std::string& shown = brief.empty() ? date : brief;
    date_.setText(shown);
    date_.set_visible(!shown.empty()); // and its room is the sender's
    std::string name = spoken(sender) + ", " + spoken(subject);
    if (!date.empty()) name += ", " + spoken(date);
    if (Gtk::Widget* const item = get_parent()) Adwaita::setName(*item, name);
}

bool MessageRow::showTooltip(const Glib::RefPtr<Gtk::Tooltip>& tooltip) const {
    if (!entry_) return false;
    std::string text;
    for (const std::string& line :
         {displayed(entry_->from.view()), displayed(entry_->subject.view()), wholeDate(*entry_)})
        if (!spoken(line).empty()) text += (text.empty() ? "" : "\n") + line;
    Adwaita::showTooltip(tooltip, text);
    return !text.empty();
}

} // namespace TesselMail
