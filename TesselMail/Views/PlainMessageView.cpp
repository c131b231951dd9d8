#include "TesselMail/Views/PlainMessageView.h"

#include "MailCore/Rendering/PageParts.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/Wrapping.h"

#include <fmt/format.h>

#include <utility>

namespace TesselMail {

PlainMessageView::PlainMessageView(Preferences& preferences)
    : Gtk::Box(Gtk::Orientation::VERTICAL), preferences_(preferences) {
    reason_.set_wrap(true);
    reason_.set_xalign(0);
    reason_.add_css_class("notice");
    reason_.add_css_class("plain-reason");
    Adwaita::makeLive(reason_, Adwaita::Live::alert);
    text_.set_editable(false);
    text_.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    text_.set_pixels_inside_wrap(4);
    text_.set_pixels_above_lines(2);
    text_.set_pixels_below_lines(2);
    text_.add_css_class("plain-message");
    text_.get_style_context()->add_provider(size_, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    scroller_.set_child(text_);
    scroller_.set_vexpand(true);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    append(reason_);
    append(scroller_);
    showSize();
}

void PlainMessageView::show(std::string text, const std::string& reason) {
    showSize();
    reason_.set_text(reason);
    reason_.set_visible(!reason.empty());
    gtk_accessible_update_property(GTK_ACCESSIBLE(text_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences_.text(Texts::messageBody).c_str(), -1);
    std::erase(text, '\0'); // which no text widget takes
    text = inShortLines(text);
    if (text == shown_) return; // where people are in it stays
    shown_ = std::move(text);
    const auto buffer = text_.get_buffer();
    buffer->set_text(shown_);
    breakWithoutHyphens(text_);
    buffer->place_cursor(buffer->begin());
    scroller_.get_vadjustment()->set_value(0);
}

void PlainMessageView::clear() {
    shown_.clear();
    text_.get_buffer()->set_text("");
}

void PlainMessageView::showSize() {
    size_->load_from_data(fmt::format("textview {{ font-size: {}px; }}",
                                      preferences_.readingScale() * MailCore::PageParts::baseFontSize));
}

} // namespace TesselMail
