#include "TesselMail/Views/AttachmentBar.h"

#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"

#include <algorithm>
#include <memory>

namespace TesselMail {
namespace {

constexpr int tallest = 132; // about two and a half rows: that there is more can be seen

std::string sizeText(std::size_t bytes) {
    const std::unique_ptr<char, decltype(&g_free)> text(g_format_size(bytes), g_free);
    return text.get();
}

std::string subtitleOf(const MailCore::MailAttachment& attachment, const Preferences& preferences) {
    if (!attachment.available) return preferences.text(Texts::unavailable);
    if (!attachment.embedded.empty()) return preferences.text(Texts::attachedMessage);
    if (attachment.isOLE) return preferences.text(Texts::embeddedObject);
    return sizeText(attachment.bytes.size());
}

const char* iconOf(const MailCore::MailAttachment& attachment) {
    if (attachment.canPreview()) return "mail-unread-symbolic";
    return attachment.type.starts_with("image/") ? "image-x-generic-symbolic" : "mail-attachment-symbolic";
}

} // namespace

AttachmentBar::AttachmentBar(AppModel& model) : Glib::ObjectBase("TesselAttachmentBar"), model_(model) {
    buttons_.set_selection_mode(Gtk::SelectionMode::NONE);
    buttons_.set_homogeneous(true);
    buttons_.set_max_children_per_line(12);
    buttons_.set_column_spacing(8);
    buttons_.set_row_spacing(8);
    buttons_.set_valign(Gtk::Align::START);
    set_child(buttons_);
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    add_css_class("attachments");
}

Gtk::SizeRequestMode AttachmentBar::get_request_mode_vfunc() const {
    return Gtk::SizeRequestMode::HEIGHT_FOR_WIDTH;
}

void AttachmentBar::measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                                  int& minimumBaseline, int& naturalBaseline) const {
    buttons_.measure(orientation, forSize, minimum, natural, minimumBaseline, naturalBaseline);
    minimumBaseline = naturalBaseline = -1;
    if (orientation == Gtk::Orientation::VERTICAL) minimum = natural = std::min(natural, tallest);
}

void AttachmentBar::update() {
    while (Gtk::FlowBoxChild* const child = buttons_.get_child_at_index(0)) buttons_.remove(*child);
    const auto& message = *model_.message;
    set_visible(message && !message->attachments.empty());
    if (message)
        for (const MailCore::MailAttachment& attachment : message->attachments) add(attachment);
    gtk_accessible_update_property(GTK_ACCESSIBLE(buttons_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   model_.preferences().text(Texts::attachments).c_str(), -1);
}

// The button is still in the middle of its signal, and goes when another message is shown.
void AttachmentBar::act(MailCore::UUID attachment, Action action) {
    const auto operation = sigc::mem_fun(model_, action == Action::read ? &AppModel::previewAttachment
                                                                        : &AppModel::saveAttachment);
    Glib::signal_idle().connect(
        sigc::bind_return(sigc::track_obj([operation, attachment] { operation(attachment); }, *this), false));
}

void AttachmentBar::add(const MailCore::MailAttachment& attachment) {
    const Preferences& preferences = model_.preferences();
    const Action action = attachment.canPreview() ? Action::read : Action::save;
    const std::string caption =
        preferences.text(action == Action::read ? Texts::readAttachedMessage : Texts::saveAttachment);
    const std::string name = displayed(attachment.name, 200);
    const std::string subtitle = subtitleOf(attachment, preferences);

    auto* const title = Gtk::make_managed<Gtk::Label>(name);
    title->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    title->set_max_width_chars(28);
    title->set_xalign(0);
    auto* const detail = Gtk::make_managed<Gtk::Label>(subtitle);
    detail->set_xalign(0);
    detail->add_css_class("caption");
    detail->add_css_class("dim-label");
    auto* const texts = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    texts->append(*title);
    texts->append(*detail);
    auto* const icon = Gtk::make_managed<Gtk::Image>();
    icon->set_from_icon_name(iconOf(attachment));
    auto* const content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 10);
    content->append(*icon);
    content->append(*texts);

    auto* const button = Gtk::make_managed<Gtk::Button>();
    button->set_child(*content);
    button->add_css_class("attachment");
    Adwaita::setTooltip(*button, caption + "\n" + name);
    button->set_sensitive(attachment.available);
    gtk_accessible_update_property(GTK_ACCESSIBLE(button->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   (caption + " " + name + ", " + subtitle).c_str(), -1);
    button->signal_clicked().connect(
        sigc::bind(sigc::mem_fun(*this, &AttachmentBar::act), attachment.id, action));

    auto* const child = Gtk::make_managed<Gtk::FlowBoxChild>();
    child->set_child(*button);
    child->set_focusable(false); // the button takes the focus
    buttons_.append(*child);
}

} // namespace TesselMail
