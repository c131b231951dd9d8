#include "TesselMail/Views/ReadingPane.h"

#include "MailCore/Platform/Text.h"
#include "TesselMail/Platform/SandboxCheck.h"

namespace TesselMail {
namespace {

// A read that takes less needs no sign that it goes on.
constexpr unsigned spinnerDelay = 250; // milliseconds

bool isDark() {
    return adw_style_manager_get_dark(adw_style_manager_get_default());
}

} // namespace

ReadingPane::ReadingPane(AppModel& model)
    : Gtk::Box(Gtk::Orientation::VERTICAL), model_(model), capture_(model), messageHeader_(model),
      attachments_(model), self_(std::make_shared<ReadingPane*>(this)) {
    add_css_class("reading-pane");
    details_.set_icon_name("help-about-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(details_.gobj()), "win.details");
    export_.set_icon_name("document-save-as-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(export_.gobj()), "win.export-original");
    header_.hideTitle();
    header_.packEnd(export_);
    header_.packEnd(details_);
    header_.packEnd(spinner_);
    append(header_.widget());

    tryAgain_.set_halign(Gtk::Align::CENTER);
    tryAgain_.add_css_class("pill");
    tryAgain_.signal_clicked().connect(sigc::mem_fun(*this, &ReadingPane::readAgain));
    failed_.setChild(tryAgain_);
    message_.append(messageHeader_);
    message_.append(attachments_);
    message_.append(*Gtk::make_managed<Gtk::Separator>());
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
    model_.readRequest.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.readerFailed.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showPage));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &ReadingPane::showTexts));
    g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                             G_CALLBACK(+[](ReadingPane* self) { self->showBody(); }), this);
    showTexts();
    prepareView(self_);
}

ReadingPane::~ReadingPane() {
    *self_ = nullptr;
    spinnerDelay_.disconnect();
    g_signal_handlers_disconnect_by_data(adw_style_manager_get_default(), this);
}

Task ReadingPane::prepareView(std::shared_ptr<ReadingPane*> self) {
    const bool sandboxed = co_await sandboxWorks();
    if (*self) (*self)->makeView(sandboxed);
}

void ReadingPane::makeView(bool sandboxed) {
    if (sandboxed) {
        web_.emplace(model_);
        web_->set_vexpand(true);
        web_->add_css_class("reading-view");
        message_.append(*web_);
    } else {
        usePlain_ = true;
        plain_.set_editable(false);
        plain_.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
        plain_.add_css_class("plain-message");
        plainScroller_.set_child(plain_);
        plainScroller_.set_vexpand(true);
        message_.append(plainScroller_);
    }
    showBody();
}

void ReadingPane::showTexts() {
    const Preferences& preferences = model_.preferences();
    details_.set_tooltip_text(preferences.text(Texts::messageDetails));
    export_.set_tooltip_text(preferences.text(Texts::exportOriginalHelp));
    for (const auto& [widget, text] :
         {std::pair<Gtk::Widget*, const Text*>(&details_, &Texts::messageDetails),
          {&export_, &Texts::exportOriginalHelp},
          {&spinner_, &Texts::readingMessage},
          {&plain_, &Texts::messageBody}})
        gtk_accessible_update_property(GTK_ACCESSIBLE(widget->gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       preferences.text(*text).c_str(), -1);
    select_.setTexts(preferences.text(Texts::selectMessage), preferences.text(Texts::selectMessageHint));
    large_.setTexts(preferences.text(Texts::tooLargeToPreview),
                    preferences.text(Texts::tooLargeToPreviewHint));
    failed_.setTexts(preferences.text(Texts::notShown), "");
    tryAgain_.set_label(preferences.text(Texts::tryAgain));
    if (web_) web_->showTexts();
    showMessage();
}

void ReadingPane::showMessage() {
    if (web_) web_->closeLink();
    showHeader();
    attachments_.update();
    showBody();
    showPage();
}

void ReadingPane::showHeader() {
    messageHeader_.update();
}

void ReadingPane::showBody() {
    if (web_) web_->update(isDark(), model_.currentMessageReady());
    if (!usePlain_) return;
    const auto& message = *model_.message;
    const bool blank = !message || MailCore::Text::trimmed(message->plain).empty();
    plain_.get_buffer()->set_text(blank ? model_.preferences().text(Texts::noPlainText) : message->plain);
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
    else if (*model_.readerFailed || (!*model_.message && !*model_.reading))
        page = "failed";
    else if (!*model_.message || (*model_.reading && slow_))
        page = "empty";
    stack_.set_visible_child(page);
}

void ReadingPane::showReading() {
    if (web_ && *model_.reading) web_->closeLink();
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

void ReadingPane::focusBody() {
    if (web_)
        web_->focusText();
    else
        plain_.grab_focus();
}

void ReadingPane::readAgain() {
    model_.select(*model_.selectedEntry);
}

} // namespace TesselMail
