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
    adw_button_content_set_label(content_, (copied_ ? copiedLabel_ : label_).c_str());
}

} // namespace TesselMail
