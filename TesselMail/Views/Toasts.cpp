#include "TesselMail/Views/Toasts.h"

#include "MailCore/Platform/UTF16.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/DisplayText.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace TesselMail {
namespace {

constexpr unsigned secondsShown = 8;
constexpr int leastCharacters = 12; // of a text beside its button

} // namespace

Toasts::Toasts(AppModel& model) : model_(model), overlay_(ADW_TOAST_OVERLAY(adw_toast_overlay_new())) {
    saved_ = model_.signalSaved().connect(sigc::mem_fun(*this, &Toasts::saved));
}

Toasts::~Toasts() {
    saved_.disconnect();
}

Gtk::Widget& Toasts::widget() const {
    return Adwaita::wrapped(overlay_);
}

void Toasts::setChild(Gtk::Widget& child) {
    adw_toast_overlay_set_child(overlay_, child.gobj());
}

AdwToast* Toasts::make(const std::string& text) {
    AdwToast* const toast = adw_toast_new("");
    auto* const label = Gtk::make_managed<Gtk::Label>(text);
    label->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    label->set_width_chars(std::min(leastCharacters, static_cast<int>(MailCore::Text::lengthInUTF16(text))));
    label->add_css_class("heading");
    Adwaita::makeLive(*label, Adwaita::Live::alert);
    adw_toast_set_custom_title(toast, GTK_WIDGET(label->gobj()));
    adw_toast_set_timeout(toast, secondsShown);
    return toast;
}

void Toasts::present(AdwToast* toast) {
    if (const auto before = shown_.get()) adw_toast_dismiss(before.get());
    shown_.set(toast);
    adw_toast_overlay_add_toast(overlay_, toast);
    // The library leaves the button that closes it without a name.
    for (GtkWidget* child = gtk_widget_get_last_child(GTK_WIDGET(overlay_)); child;
         child = gtk_widget_get_last_child(child))
        if (GTK_IS_BUTTON(child)) {
            Adwaita::setName(Adwaita::wrapped(child), model_.preferences().text(Texts::close));
            break;
        }
}

void Toasts::tell(const std::string& text) {
    present(make(text));
}

void Toasts::saved(const MailCore::URL& file) {
    AdwToast* const toast = make(model_.preferences().text(Texts::saved));
    adw_toast_set_button_label(toast, model_.preferences().text(Texts::showInFolder).c_str());
    using Asked = std::pair<MailCore::Alive<Toasts>::Handle, MailCore::URL>;
    auto asked = std::make_unique<Asked>(alive_.handle(), file);
    g_signal_connect_data(
        toast, "button-clicked", G_CALLBACK(+[](AdwToast*, const Asked* what) {
            if (what->first) showInFolder(what->first, what->second);
        }),
        asked.release(),
        +[](gpointer data, GClosure*) { const std::unique_ptr<Asked> owned(static_cast<Asked*>(data)); },
        GConnectFlags(0));
    present(toast);
}

Task Toasts::showInFolder(MailCore::Alive<Toasts>::Handle self, MailCore::URL file) {
    const bool shown = co_await self->model_.showInFolder(file);
    if (!shown && self)
        self->tell(self->model_.preferences().text(Texts::savedAs) + displayed(file.path(), 200));
}

} // namespace TesselMail
