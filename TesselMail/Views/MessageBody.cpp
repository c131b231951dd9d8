#include "TesselMail/Views/MessageBody.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/ReadableText.h"
#include "TesselMail/Views/Actions.h"

namespace TesselMail {
namespace {

constexpr unsigned patience = 5'000; // milliseconds

bool isDark() {
    return adw_style_manager_get_dark(adw_style_manager_get_default());
}

} // namespace

MessageBody::MessageBody(AppModel& model, PreparedView prepared)
    : model_(model), plain_(model.preferences()),
      plainText_(Gio::SimpleAction::create_bool(Actions::plainText.name(), false)), lack_(prepared.lack) {
    set_hhomogeneous(false);
    set_vhomogeneous(false);
    set_vexpand(true);
    add(plain_, "plain");
    plainText_->signal_change_state().connect(sigc::mem_fun(*this, &MessageBody::changePlainText));
    g_signal_connect_swapped(adw_style_manager_get_default(), "notify::dark",
                             G_CALLBACK(+[](MessageBody* self) { self->update(); }), this);
    if (prepared.view) takeView(std::move(prepared.view));
    update();
}

MessageBody::~MessageBody() {
    watch_.disconnect();
    g_signal_handlers_disconnect_by_data(adw_style_manager_get_default(), this);
}

void MessageBody::takeView(std::unique_ptr<LockedWebView> view) {
    web_.emplace(model_, std::move(view));
    web_->set_vexpand(true);
    web_->add_css_class("reading-view");
    web_->signalShown().connect(sigc::mem_fun(*this, &MessageBody::webShown));
    add(*web_, "web");
}

const Phrase* MessageBody::reason() const {
    if (lack_ == PreparedView::Lack::sandbox) return &Texts::plainWithoutSandbox;
    if (lacksRules()) return &Texts::plainWithoutRules;
    if (unanswered_ == *model_.selectionVersion) return &Texts::plainWithoutAnswer;
    return nullptr;
}

bool MessageBody::lacksRules() const {
    return lack_ == PreparedView::Lack::folder || (web_ && web_->lacksRules());
}

bool MessageBody::wantsPlainText() const {
    bool wanted = false;
    plainText_->get_state(wanted);
    return wanted;
}

bool MessageBody::showsPlainText() const {
    return wantsPlainText() || reason();
}

void MessageBody::update() {
    plainText_->set_enabled(lack_ != PreparedView::Lack::sandbox && !lacksRules());
    if (web_) {
        // A process that has kept one message waiting is not given another.
        if (unanswered_ && unanswered_ != *model_.selectionVersion) {
            unanswered_.reset();
            web_->restart();
        }
        if (wantsPlainText())
            web_->clear(isDark());
        else
            web_->update(isDark(), model_.currentMessageReady());
    }
    watch();
    showView();
}

void MessageBody::watch() {
    const MailCore::UUID awaited = *model_.selectionVersion;
    const bool waits = web_ && !wantsPlainText() && !lacksRules() && *model_.message &&
                       !*model_.readerFailed && unanswered_ != awaited && web_->shown() != awaited;
    if (!waits) {
        watch_.disconnect();
        watched_.reset();
    } else if (watched_ != awaited) {
        watched_ = awaited;
        watch_.disconnect();
        watch_ = Glib::signal_timeout().connect(
            sigc::bind_return(sigc::mem_fun(*this, &MessageBody::giveUpWaiting), false), patience);
    }
}

void MessageBody::giveUpWaiting() {
    unanswered_ = std::exchange(watched_, std::nullopt);
    showView();
    signalShown_.emit();
}

void MessageBody::webShown() {
    if (unanswered_ && web_->shown() == unanswered_) unanswered_.reset(); // late, but here
    update();
    signalShown_.emit();
}

bool MessageBody::showsOther() const {
    return web_ && *model_.message && !showsPlainText() && web_->shown() &&
           web_->shown() != *model_.selectionVersion && web_->get_opacity() > 0;
}

void MessageBody::hideOther() {
    if (showsOther()) web_->set_opacity(0);
}

void MessageBody::showView() {
    Gtk::Widget* next = &plain_;
    if (!showsPlainText() && web_) next = &*web_;
    if (next == &plain_)
        showPlainText();
    else
        plain_.clear();
    if (web_ && web_->shown() == *model_.selectionVersion) web_->set_opacity(1);
    Gtk::Widget* const former = get_visible_child();
    if (former == next) return;
    Gtk::Root* const root = get_root();
    Gtk::Widget* const focus = root ? root->get_focus() : nullptr;
    const bool hadFocus = former && focus && (focus == former || focus->is_ancestor(*former));
    set_visible_child(*next);
    if (hadFocus) focusText();
}

void MessageBody::showPlainText() {
    const auto& message = *model_.message;
    if (!message) return plain_.clear();
    const Preferences& preferences = model_.preferences();
    const auto blank = [](const std::string& text) { return MailCore::Text::trimmed(text).empty(); };
    std::string text = message->plain;
    if (blank(text) && *model_.rendered) text = MailCore::SafeHTML::readableText((*model_.rendered)->body);
    if (blank(text)) text = preferences.text(Texts::noPlainText);
    const Phrase* const why = reason();
    plain_.show(std::move(text), why ? preferences.text(*why) : std::string());
}

void MessageBody::changePlainText(const Glib::VariantBase& state) {
    closeLink();
    plainText_->set_state(state);
    update();
    signalShown_.emit();
}

void MessageBody::showTexts() {
    if (web_) web_->showTexts();
    update();
}

void MessageBody::focusText() {
    if (showsPlainText())
        plain_.focusText();
    else if (web_)
        web_->focusText();
}

void MessageBody::closeLink() {
    if (web_) web_->closeLink();
}

} // namespace TesselMail
