#include "TesselMail/Views/CaptureView.h"

#include "TesselMail/Views/AdwaitaWidgets.h"

namespace TesselMail {

CaptureView::CaptureView(AppModel& model) : model_(model) {
    icon_.set_from_icon_name("insert-link-symbolic");
    icon_.set_icon_size(Gtk::IconSize::LARGE);
    title_.set_xalign(0);
    title_.add_css_class("title-2");
    head_.append(icon_);
    title_.set_hexpand(true);
    close_.set_icon_name("window-close-symbolic");
    close_.add_css_class("flat");
    close_.set_valign(Gtk::Align::CENTER);
    close_.signal_clicked().connect(sigc::mem_fun(*this, &CaptureView::close));
    head_.append(title_);
    head_.append(close_);
    details_.add_css_class("suggested-action");
    original_.signal_clicked().connect(sigc::mem_fun(*this, &CaptureView::copyOriginal));
    // One above the other where it is narrow.
    actions_.set_selection_mode(Gtk::SelectionMode::NONE);
    actions_.set_max_children_per_line(2);
    actions_.set_column_spacing(10);
    actions_.set_row_spacing(10);
    for (Gtk::Widget* const button : std::initializer_list<Gtk::Widget*>{&details_, &original_}) {
        actions_.append(*button);
        button->set_halign(Gtk::Align::START);
        button->get_parent()->set_focusable(false); // what the box puts around it
        button->get_parent()->set_hexpand(false);
    }
    nothingSent_.set_xalign(0);
    nothingSent_.add_css_class("heading");
    footer_.set_xalign(0);
    footer_.set_wrap(true);
    footer_.add_css_class("dim-label");
    content_.append(head_);
    content_.append(fields_);
    content_.append(actions_);
    content_.append(nothingSent_);
    content_.append(footer_);
    content_.set_margin(28);
    set_child(content_);
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);

    // Wherever the focus is, unless something there makes use of the key.
    const auto keys = Gtk::ShortcutController::create();
    keys->set_scope(Gtk::ShortcutScope::GLOBAL);
    keys->add_shortcut(
        Gtk::Shortcut::create(Gtk::KeyvalTrigger::create(GDK_KEY_Escape),
                              Gtk::CallbackAction::create(sigc::mem_fun(*this, &CaptureView::leave))));
    add_controller(keys);

    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &CaptureView::showCapture));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &CaptureView::showTexts));
    showCapture();
}

void CaptureView::showCapture() {
    if (*model_.capture) details_.offer((*model_.capture)->text());
    showTexts();
}

void CaptureView::showTexts() {
    fields_.clear();
    const auto& capture = *model_.capture;
    if (!capture) return;
    const Preferences& preferences = model_.preferences();
    title_.set_text(preferences.text(Texts::emailLink));
    Adwaita::setTooltip(close_, preferences.text(Texts::close));
    gtk_accessible_update_property(GTK_ACCESSIBLE(close_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences.text(Texts::close).c_str(), -1);
    const std::string copy = preferences.text(Texts::copyValue);
    fields_.add(preferences.text(Texts::to), capture->to, copy);
    for (const auto& [label, value] : {std::pair<const Phrase&, const std::string&>{Texts::cc, capture->cc},
                                       {Texts::bcc, capture->bcc},
                                       {Texts::subject, capture->subject}})
        if (!value.empty()) fields_.add(preferences.text(label), value, copy);
    if (!capture->body.empty()) fields_.add(preferences.text(Texts::messageBody), capture->body);
    details_.setTexts(preferences.text(Texts::copyDetails), preferences.text(Texts::copied));
    original_.set_label(preferences.text(Texts::copyOriginalLink));
    nothingSent_.set_text(preferences.text(Texts::nothingSent));
    footer_.set_text(preferences.text(Texts::onlyHeld));
}

void CaptureView::copyOriginal() {
    if (*model_.capture) get_clipboard()->set_text((*model_.capture)->original);
}

void CaptureView::close() {
    signalLeft_.emit();
    model_.closeCapture();
}

bool CaptureView::leave(Gtk::Widget&, const Glib::VariantBase&) {
    if (!*model_.capture) return false;
    close();
    return true;
}

} // namespace TesselMail
