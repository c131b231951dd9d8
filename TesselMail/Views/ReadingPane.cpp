#include "TesselMail/Views/ReadingPane.h"

#include "TesselMail/Views/Actions.h"

#include <utility>

namespace TesselMail {
namespace {

// A read that takes less needs no sign that it goes on.
constexpr unsigned spinnerDelay = 250; // milliseconds
// Nor is a page blanked that the next message will fill at once.
constexpr unsigned otherDelay = 250; // milliseconds

} // namespace

ReadingPane::ReadingPane(AppModel& model, PreparedView prepared)
    : Gtk::Box(Gtk::Orientation::VERTICAL), model_(model), capture_(model), messageHeader_(model),
      attachments_(model), body_(model, std::move(prepared)) {
    add_css_class("reading-pane");
    details_.set_icon_name("help-about-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(details_.gobj()), Actions::details.path);
    export_.set_icon_name("document-save-as-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(export_.gobj()), Actions::exportOriginal.path);
    header_.hideTitle();
    header_.packEnd(export_);
    header_.packEnd(details_);
    header_.packEnd(spinner_);
    append(header_.widget());

    remedy_.set_halign(Gtk::Align::CENTER);
    remedy_.add_css_class("pill");
    remedy_.signal_clicked().connect(sigc::mem_fun(*this, &ReadingPane::applyRemedy));
    failed_.setChild(remedy_);
    message_.append(messageHeader_);
    message_.append(attachments_);
    message_.append(*Gtk::make_managed<Gtk::Separator>());
    message_.append(body_);
    stack_.add(empty_, "empty");
    stack_.add(capture_, "capture");
    stack_.add(select_.widget(), "select");
    stack_.add(large_.widget(), "large");
    stack_.add(failed_.widget(), "failed");
    stack_.add(message_, "message");
    stack_.set_vexpand(true);
    stack_.set_hhomogeneous(false);
    append(stack_);

    model_.selectionVersion.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showMessage));
    model_.showDetails.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showHeader));
    model_.reading.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showReading));
    model_.signalSelecting().connect(sigc::mem_fun(*this, &ReadingPane::closeLink));
    model_.readRequest.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.readerFailed.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.readFailure.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showFailure));
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showTexts));
    capture_.signalLeft().connect([this] { wantsFocus_ = true; });
    body_.signalShown().connect(sigc::mem_fun(*this, &ReadingPane::bodyShown));
    showTexts();
}

ReadingPane::~ReadingPane() {
    spinnerDelay_.disconnect();
    otherDelay_.disconnect();
}

void ReadingPane::showTexts() {
    const Preferences& preferences = model_.preferences();
    Adwaita::setTooltip(details_, preferences.text(Texts::messageDetails));
    Adwaita::setTooltip(export_, preferences.text(Texts::exportOriginalHelp));
    for (const auto& [widget, text] :
         {std::pair<Gtk::Widget*, const Phrase*>(&details_, &Texts::messageDetails),
          {&export_, &Texts::exportOriginalHelp},
          {&spinner_, &Texts::readingMessage}})
        gtk_accessible_update_property(GTK_ACCESSIBLE(widget->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       preferences.text(*text).c_str(), -1);
    select_.setTexts(preferences.text(Texts::selectMessage), preferences.text(Texts::selectMessageHint));
    large_.setTexts(preferences.text(Texts::tooLargeToPreview),
                    preferences.text(Texts::tooLargeToPreviewHint));
    showFailure();
    body_.showTexts();
    showHeader();
    showPage();
}

void ReadingPane::showMessage() {
    closeLink();
    body_.update();
    otherDelay_.disconnect();
    if (body_.showsOther())
        otherDelay_ = Glib::signal_timeout().connect(
            sigc::bind_return(sigc::mem_fun(*this, &ReadingPane::hideOther), false), otherDelay);
    showHeader();
    showPage();
}

// A header never stands above the text of another message: it waits for its own.
void ReadingPane::showHeader() {
    if (body_.showsOther()) return;
    const Gtk::Widget* const focus = get_root() ? get_root()->get_focus() : nullptr;
    const bool onAttachment = focus && focus->is_ancestor(attachments_);
    messageHeader_.update();
    attachments_.update();
    if (onAttachment) focusBody(); // its button went with the message before
}

void ReadingPane::hideOther() {
    body_.hideOther();
    showHeader();
}

void ReadingPane::bodyShown() {
    showHeader();
    showPage();
}

void ReadingPane::focusBody() {
    if (*model_.capture) return capture_.focusCopying();
    if (stack_.get_visible_child_name() == "failed" && remedy_.grab_focus()) return;
    body_.focusText();
}

void ReadingPane::showBody() {
    body_.update();
}

void ReadingPane::closeLink() {
    body_.closeLink();
}

// While a newer selection is being read, the message before it stays for a moment, lest the pane flicker.
void ReadingPane::showPage() {
    const char* page = "message";
    if (*model_.capture)
        page = "capture";
    else if (!model_.entry())
        page = "select";
    else if (model_.selectionTooLarge())
        page = "large";
    else if ((*model_.readerFailed && !body_.showsPlainText()) || (!*model_.message && !*model_.reading))
        page = "failed";
    else if (!*model_.message || (*model_.reading && slow_))
        page = "empty";
    if (stack_.get_visible_child_name() == page) return;
    stack_.set_visible_child(page);
    if (*model_.capture) return capture_.focusCopying();
    if (stack_.get_visible_child() == &empty_) return; // the message comes
    if (std::exchange(wantsFocus_, false) && stack_.get_visible_child() == &message_) focusBody();
}

void ReadingPane::showReading() {
    if (*model_.reading) closeLink();
    spinnerDelay_.disconnect();
    slow_ = false;
    if (*model_.reading)
        spinnerDelay_ = Glib::signal_timeout().connect(
            sigc::bind_return(sigc::mem_fun(*this, &ReadingPane::showSpinner), false), spinnerDelay);
    else
        spinner_.stop();
    showBody();
    showPage();
}

void ReadingPane::showSpinner() {
    spinner_.start();
    slow_ = true;
    showPage();
}

void ReadingPane::showFailure() {
    const Preferences& preferences = model_.preferences();
    const Failure failure = (*model_.readFailure).value_or(Failure());
    failed_.setTexts(preferences.text(Texts::notShown), preferences.text(failure.text));
    remedy_.set_label(preferences.text(failure.remedy == Remedy::reopen ? Texts::reopen : Texts::tryAgain));
    remedy_.set_visible(failure.remedy != Remedy::none);
}

void ReadingPane::applyRemedy() {
    if (!*model_.readFailure) return;
    if ((*model_.readFailure)->remedy == Remedy::reopen)
        model_.reopenSource();
    else
        model_.select(*model_.selectedEntry);
}

} // namespace TesselMail
