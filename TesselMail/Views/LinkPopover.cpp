#include "TesselMail/Views/LinkPopover.h"

namespace TesselMail {

LinkPopover::LinkPopover(Gtk::Widget& parent, Preferences& preferences) : preferences_(preferences) {
    title_.set_xalign(0);
    title_.set_hexpand(true);
    title_.add_css_class("heading");
    close_.set_icon_name("window-close-symbolic");
    close_.add_css_class("flat");
    close_.signal_clicked().connect(sigc::mem_fun(*this, &LinkPopover::popdown));
    head_.append(icon_);
    head_.append(title_);
    head_.append(close_);
    scroller_.set_child(fields_);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_propagate_natural_height(true);
    scroller_.set_min_content_height(48); // any more could not shrink in a low window
    copy_.set_halign(Gtk::Align::END);

    content_.set_margin(6);
    content_.append(head_);
    content_.append(scroller_);
    content_.append(copy_);
    set_child(content_);
    set_parent(parent);
    set_position(Gtk::PositionType::TOP);
    preferences_.signalChanged().connect(sigc::mem_fun(*this, &LinkPopover::showTexts));
}

LinkPopover::~LinkPopover() {
    unparent();
}

void LinkPopover::show(const std::string& address, const Gdk::Rectangle& place) {
    if (!get_parent() || !get_parent()->get_mapped()) return;
    const std::optional<CapturedMailLink> link = CapturedMailLink::of(address, preferences_.chinese());
    if (!link) return popdown();
    address_ = address;
    copy_.offer(link->copyValue);
    showLink(*link);
    set_pointing_to(place);
    popup();
    copy_.grab_focus();
}

void LinkPopover::showTexts() {
    if (const auto link = CapturedMailLink::of(address_, preferences_.chinese())) showLink(*link);
}

void LinkPopover::showLink(const CapturedMailLink& link) {
    close_.set_tooltip_text(preferences_.text(Texts::close));
    icon_.set_from_icon_name(iconOfSymbol(link.symbol));
    title_.set_text(link.title);
    fields_.clear();
    for (const CapturedMailLink::Field& field : link.fields) fields_.add(field.label, field.value);
    scroller_.set_max_content_height(link.height());
    copy_.setTexts(link.copyLabel, preferences_.text(Texts::copied));
}

} // namespace TesselMail
