#include "TesselMail/Views/MessageHeader.h"

#include "MailCore/Dates/MailDate.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/SystemLocale.h"
#include "TesselMail/Views/Wrapping.h"

namespace TesselMail {
namespace {

void setUpValue(Gtk::Label& label, int lines) {
    label.set_wrap(true);
    label.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    label.set_lines(lines);
    label.set_width_chars(4); // a single letter is narrower than its ellipsis, of which the toolkit warns
    label.set_selectable(true);
    label.set_xalign(0);
    label.set_hexpand(true);
    breakWithoutHyphens(label);
    // What is cut can be read by pointing at it.
    label.set_has_tooltip(true);
    label.signal_query_tooltip().connect(
        [&label](int, int, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip) {
            const bool cut = label.get_layout()->is_ellipsized();
            if (cut) Adwaita::showTooltip(tooltip, label.get_text());
            return cut;
        },
        false);
}

} // namespace

MessageHeader::MessageHeader(AppModel& model) : Gtk::Box(Gtk::Orientation::VERTICAL, 10), model_(model) {
    add_css_class("message-header");
    setUpValue(subject_, 3);
    subject_.add_css_class("title-2");
    append(subject_);

    summary_.set_column_spacing(12);
    summary_.set_row_spacing(3);
    for (std::size_t row = 0; row < lines_.size(); ++row) {
        Line& line = lines_[row];
        line.name.set_xalign(1);
        line.name.set_valign(Gtk::Align::START);
        line.name.add_css_class("dim-label");
        setUpValue(line.value, 3);
        summary_.attach(line.name, 0, static_cast<int>(row));
        summary_.attach(line.value, 1, static_cast<int>(row));
    }
    append(summary_);

    headers_.set_editable(false);
    headers_.set_cursor_visible(false);
    headers_.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    headers_.add_css_class("all-headers");
    nameTag_ = headers_.get_buffer()->create_tag();
    nameTag_->property_weight() = PANGO_WEIGHT_BOLD;
    scroller_.set_child(headers_);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_propagate_natural_height(true);
    scroller_.set_max_content_height(280);
    append(scroller_);
}

void MessageHeader::update() {
    const auto& message = *model_.message;
    if (!message) return;
    const Preferences& preferences = model_.preferences();
    subject_.set_text(message->subject.empty() ? preferences.text(Texts::noSubject)
                                               : displayedAlone(message->subject));
    showLine(lines_[0], Texts::from, message->from);
    showLine(lines_[1], Texts::to, message->to);
    showLine(lines_[2], Texts::cc, message->cc);
    showLine(lines_[3], Texts::date, MailCore::MailDate::display(message->date, systemLocale()));

    const bool details = *model_.showDetails;
    gtk_accessible_update_property(GTK_ACCESSIBLE(headers_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences.text(Texts::messageDetails).c_str(), -1);
    summary_.set_visible(!details);
    scroller_.set_visible(details);
    if (details)
        showHeaders(message->headers);
    else
        headers_.get_buffer()->set_text("");
}

void MessageHeader::showLine(Line& line, const Phrase& name, const std::string& value) {
    line.name.set_text(model_.preferences().text(name));
    line.value.set_text(displayedAlone(value));
    line.name.set_visible(!value.empty());
    line.value.set_visible(!value.empty());
}

void MessageHeader::showHeaders(const std::vector<MailCore::Header>& headers) {
    const auto buffer = headers_.get_buffer();
    buffer->set_text("");
    for (const MailCore::Header& header : headers) {
        if (buffer->size() > 0) buffer->insert(buffer->end(), "\n");
        buffer->insert_with_tag(buffer->end(), displayedAlone(header.name) + ": ", nameTag_);
        buffer->insert(buffer->end(), displayedAlone(header.value, 16'000));
    }
    breakWithoutHyphens(headers_);
    scroller_.get_vadjustment()->set_value(0);
}

} // namespace TesselMail
