#include "TesselMail/Views/LinkFields.h"

#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/Wrapping.h"

namespace TesselMail {

namespace {

constexpr std::size_t longValue = 4'000; // bytes
constexpr int tallestText = 320;         // pixels
constexpr int leastCharacters = 12;      // a line

Gtk::Widget& shortText(const std::string& label, const std::string& value) {
    auto* const text = Gtk::make_managed<Gtk::Label>(displayedLines(value));
    text->set_selectable(true);
    text->set_wrap(true);
    text->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    text->set_xalign(0);
    breakWithoutHyphens(*text);
    text->set_width_chars(leastCharacters);
    text->set_max_width_chars(60);
    gtk_accessible_update_property(GTK_ACCESSIBLE(text->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   (label + ": " + displayedLines(value)).c_str(), -1);
    return *text;
}

// A label is laid out whole, a text widget as far as it is seen.
Gtk::Widget& longText(const std::string& label, const std::string& value) {
    auto* const text = Gtk::make_managed<Gtk::TextView>();
    text->set_editable(false);
    text->set_cursor_visible(false);
    text->set_accepts_tab(false);
    text->set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    text->add_css_class("all-headers");
    text->get_buffer()->set_text(displayedWhole(value));
    breakWithoutHyphens(*text);
    gtk_accessible_update_property(GTK_ACCESSIBLE(text->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(),
                                   -1);
    auto* const scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_child(*text);
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_size_request(-1, tallestText);
    return *scroller;
}

} // namespace

LinkFields::LinkFields() : Gtk::Box(Gtk::Orientation::VERTICAL, 10) {}

void LinkFields::clear() {
    while (Gtk::Widget* const child = get_first_child()) remove(*child);
}

void LinkFields::add(const std::string& label, const std::string& value, const std::string& copyHelp) {
    auto* const name = Gtk::make_managed<Gtk::Label>(label);
    name->set_xalign(0);
    name->set_hexpand(true);
    name->add_css_class("caption");
    name->add_css_class("dim-label");
    auto* const head = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 8);
    head->append(*name);
    if (!copyHelp.empty()) {
        auto* const copy = Gtk::make_managed<Gtk::Button>();
        copy->set_icon_name("edit-copy-symbolic");
        copy->add_css_class("flat");
        Adwaita::setTooltip(*copy, copyHelp);
        gtk_accessible_update_property(GTK_ACCESSIBLE(copy->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       (copyHelp + " " + label).c_str(), -1);
        copy->signal_clicked().connect(sigc::bind(
            [](Gtk::Widget* widget, const std::string& text) { widget->get_clipboard()->set_text(text); },
            copy, value));
        head->append(*copy);
    }
    auto* const field = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    field->append(*head);
    field->append(value.size() < longValue ? shortText(label, value) : longText(label, value));
    append(*field);
}

std::string iconOfSymbol(const std::string& symbol) {
    if (symbol == "envelope") return "mail-unread-symbolic";
    if (symbol == "phone") return "call-start-symbolic";
    if (symbol == "message") return "chat-message-new-symbolic";
    return "insert-link-symbolic";
}

} // namespace TesselMail
