#include "TesselMail/Views/LinkPopover.h"

#include "TesselMail/Views/AdwaitaWidgets.h"

#include <algorithm>

namespace TesselMail {

namespace {

constexpr int leastHeight = 48;

} // namespace

void FieldsScroller::setHeight(int height) {
    height_ = height;
    queue_resize();
}

Gtk::SizeRequestMode FieldsScroller::get_request_mode_vfunc() const {
    return Gtk::SizeRequestMode::CONSTANT_SIZE;
}

void FieldsScroller::measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                                   int& minimumBaseline, int& naturalBaseline) const {
    Gtk::ScrolledWindow::measure_vfunc(orientation, forSize, minimum, natural, minimumBaseline,
                                       naturalBaseline);
    if (orientation == Gtk::Orientation::HORIZONTAL) return;
    minimum = leastHeight;
    natural = std::max(height_, leastHeight);
}

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
    copy_.set_halign(Gtk::Align::END);

    content_.set_margin(6);
    content_.append(head_);
    content_.append(scroller_);
    content_.append(copy_);
    set_child(content_);
    set_parent(parent);
    set_position(Gtk::PositionType::TOP);
    signal_closed().connect(sigc::mem_fun(*this, &LinkPopover::giveFocusBack));
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

// To the link, unless people have gone elsewhere.
void LinkPopover::giveFocusBack() {
    Gtk::Widget* const focus = get_root() ? get_root()->get_focus() : nullptr;
    if (!focus || focus == this || focus->is_ancestor(*this)) signalLeft_.emit();
}

void LinkPopover::showTexts() {
    if (chinese_ == preferences_.chinese()) return;
    if (const auto link = CapturedMailLink::of(address_, preferences_.chinese())) showLink(*link);
}

void LinkPopover::showLink(const CapturedMailLink& link) {
    chinese_ = preferences_.chinese();
    Adwaita::setTooltip(close_, preferences_.text(Texts::close));
    gtk_accessible_update_property(GTK_ACCESSIBLE(close_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences_.text(Texts::close).c_str(), -1);
    icon_.set_from_icon_name(iconOfSymbol(link.symbol));
    title_.set_text(link.title);
    fields_.clear();
    for (const CapturedMailLink::Field& field : link.fields) fields_.add(field.label, field.value);
    scroller_.setHeight(link.height());
    copy_.setTexts(link.copyLabel, preferences_.text(Texts::copied));
}

} // namespace TesselMail
