#include "TesselMail/Views/LinkPopover.h"

#include "TesselMail/Views/DisplayText.h"

namespace TesselMail {

LinkPopover::LinkPopover(Gtk::Widget& parent, Preferences& preferences) : preferences_(preferences) {
    title_.set_xalign(0);
    title_.add_css_class("heading");
    text_.set_wrap(true);
    text_.set_wrap_mode(Pango::WrapMode::CHAR);
    text_.set_selectable(true);
    text_.set_xalign(0);
    text_.set_width_chars(36);
    text_.set_max_width_chars(48);
    text_.set_can_focus(true);
    scroller_.set_child(text_);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_propagate_natural_height(true);
    scroller_.set_max_content_height(220);
    copy_.set_halign(Gtk::Align::END);
    copy_.signal_clicked().connect(sigc::mem_fun(*this, &LinkPopover::copy));

    content_.set_margin(6);
    content_.append(title_);
    content_.append(scroller_);
    content_.append(copy_);
    set_child(content_);
    set_parent(parent);
    set_position(Gtk::PositionType::TOP);
    preferences_.signalChanged().connect(sigc::mem_fun(*this, &LinkPopover::showTexts));
    showTexts();
}

LinkPopover::~LinkPopover() {
    unparent();
}

void LinkPopover::show(const std::string& address, const Gdk::Rectangle& place) {
    if (!get_parent() || !get_parent()->get_mapped()) return;
    address_ = address;
    showTexts();
    text_.set_text(displayed(address, address.size()));
    set_pointing_to(place);
    popup();
    text_.select_region(0, 0);
    copy_.grab_focus();
}

void LinkPopover::showTexts() {
    title_.set_text(preferences_.text(Texts::link));
    copy_.set_label(preferences_.text(Texts::copyLink));
}

void LinkPopover::copy() {
    get_clipboard()->set_text(address_);
    copy_.set_label(preferences_.text(Texts::copied));
}

} // namespace TesselMail
