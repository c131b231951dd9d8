#include "TesselMail/Views/LinkFields.h"

#include "TesselMail/Views/DisplayText.h"

namespace TesselMail {

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
        copy->set_tooltip_text(copyHelp);
        gtk_accessible_update_property(GTK_ACCESSIBLE(copy->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       (copyHelp + " " + label).c_str(), -1);
        copy->signal_clicked().connect(sigc::bind(
            [](Gtk::Widget* widget, const std::string& text) { widget->get_clipboard()->set_text(text); },
            copy, value));
        head->append(*copy);
    }
    auto* const text = Gtk::make_managed<Gtk::Label>(displayedLines(value));
    text->set_selectable(true);
    text->set_wrap(true);
    text->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    text->set_xalign(0);
    text->set_width_chars(36);
    text->set_max_width_chars(60);
    gtk_accessible_update_property(GTK_ACCESSIBLE(text->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   (label + ": " + displayedLines(value)).c_str(), -1);
    auto* const field = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 2);
    field->append(*head);
    field->append(*text);
    append(*field);
}

std::string iconOfSymbol(const std::string& symbol) {
    if (symbol == "envelope") return "mail-unread-symbolic";
    if (symbol == "phone") return "call-start-symbolic";
    if (symbol == "message") return "chat-message-new-symbolic";
    return "insert-link-symbolic";
}

} // namespace TesselMail
