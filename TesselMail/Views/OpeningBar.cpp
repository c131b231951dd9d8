#include "TesselMail/Views/OpeningBar.h"

#include "TesselMail/Views/AdwaitaWidgets.h"

namespace TesselMail {
namespace {

// A file that opens at once makes no stir.
constexpr unsigned revealDelay = 300; // milliseconds

} // namespace

OpeningBar::OpeningBar(AppModel& model) : model_(model) {
    progress_.add_css_class("dim-label");
    progress_.add_css_class("numeric");
    Adwaita::makeLive(progress_, Adwaita::Live::status);
    cancel_.add_css_class("pill-small");
    cancel_.signal_clicked().connect(sigc::mem_fun(model_, &AppModel::cancel));
    content_.append(spinner_);
    content_.append(title_);
    content_.append(progress_);
    content_.append(cancel_);
    content_.add_css_class("opening-bar");
    set_child(content_);
    set_halign(Gtk::Align::CENTER);
    set_valign(Gtk::Align::END);
    set_transition_type(Gtk::RevealerTransitionType::SLIDE_UP);

    model_.busy.signalChanged().connect(sigc::mem_fun(*this, &OpeningBar::showBusy));
    model_.progress.signalChanged().connect(sigc::mem_fun(*this, &OpeningBar::showProgress));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &OpeningBar::showTexts));
    showTexts();
    showBusy();
}

void OpeningBar::showTexts() {
    title_.set_text(model_.preferences().text(Texts::opening));
    cancel_.set_label(model_.preferences().text(Texts::cancel));
    showProgress();
}

void OpeningBar::showProgress() {
    progress_.set_text(std::to_string(*model_.progress) + model_.preferences().text(Texts::messageCount));
    progress_.set_visible(*model_.progress > 0);
}

void OpeningBar::showBusy() {
    delay_.disconnect();
    if (*model_.busy) {
        delay_ = Glib::signal_timeout().connect(
            [this] {
                spinner_.start();
                set_can_target(true);
                set_reveal_child(true);
                return false;
            },
            revealDelay);
    } else {
        spinner_.stop();
        set_can_target(false);
        set_reveal_child(false);
    }
}

} // namespace TesselMail
