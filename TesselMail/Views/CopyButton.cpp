#include "TesselMail/Views/CopyButton.h"

#include <utility>

namespace TesselMail {

CopyButton::CopyButton() : content_(ADW_BUTTON_CONTENT(adw_button_content_new())) {
    gtk_button_set_child(gobj(), GTK_WIDGET(content_));
    signal_clicked().connect(sigc::mem_fun(*this, &CopyButton::copy));
    showState();
}

void CopyButton::offer(std::string value) {
    value_ = std::move(value);
    std::erase(value_, '\0'); // ends what the clipboard takes
    copied_ = false;
    showState();
}

void CopyButton::setTexts(const std::string& label, const std::string& copiedLabel) {
    label_ = label;
    copiedLabel_ = copiedLabel;
    showState();
}

void CopyButton::copy() {
    get_clipboard()->set_text(value_);
    copied_ = true;
    showState();
}

void CopyButton::showState() {
    adw_button_content_set_icon_name(content_, copied_ ? "object-select-symbolic" : "edit-copy-symbolic");
    const std::string& label = copied_ ? copiedLabel_ : label_;
    adw_button_content_set_label(content_, label.c_str());
    gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, label.c_str(), -1);
}

} // namespace TesselMail
