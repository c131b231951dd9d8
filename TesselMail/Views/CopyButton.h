#pragma once

#include <adwaita.h>
#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// Puts a text on the clipboard, and says so from then on until another text is offered.
class CopyButton : public Gtk::Button {
public:
    CopyButton();

    /// What a click copies.
    void offer(std::string value);
    /// What the button reads before and after a click.
    void setTexts(const std::string& label, const std::string& copiedLabel);

private:
    void copy();
    void showState();

    AdwButtonContent* content_;
    std::string value_;
    std::string label_;
    std::string copiedLabel_;
    bool copied_ = false;
};

} // namespace TesselMail
