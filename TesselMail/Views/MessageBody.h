#pragma once

#include "MailCore/Platform/Alive.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/MailWebView.h"
#include "TesselMail/Views/PlainMessageView.h"
#include "TesselMail/Views/PreparedView.h"

#include <gtkmm.h>

#include <optional>

namespace TesselMail {

/// The body of the message on show: in the web view, or as plain text where people want that or the web view
/// is not to be had. A web view that does not answer gives way to the plain text. `model` outlives it.
class MessageBody : public Gtk::Stack {
public:
    MessageBody(AppModel& model, PreparedView prepared);
    ~MessageBody() override;

    /// Shows the model's message; called again after any change of it.
    void update();
    /// Whether what can be seen belongs to a message before the model's.
    bool showsOther() const;
    /// Shows nothing until the model's message is there.
    void hideOther();
    bool showsPlainText() const;
    void showTexts();
    void focusText();
    void closeLink();

    /// Actions::plainText: whether people want the plain text; disabled where there is nothing else.
    const Glib::RefPtr<Gio::SimpleAction>& plainTextAction() const noexcept { return plainText_; }
    /// Emitted when another message, or another view of it, is shown.
    sigc::signal<void()>& signalShown() { return signalShown_; }

private:
    void takeView(std::unique_ptr<LockedWebView> view);
    bool wantsPlainText() const;
    bool lacksRules() const;
    const Phrase* reason() const;
    void changePlainText(const Glib::VariantBase& state);
    void watch();
    void giveUpWaiting();
    void webShown();
    void showView();
    void showPlainText();

    AppModel& model_;
    std::optional<MailWebView> web_; // where its sandbox can start
    PlainMessageView plain_;
    Glib::RefPtr<Gio::SimpleAction> plainText_;
    PreparedView::Lack lack_;
    std::optional<MailCore::UUID> watched_;    // the message that is awaited
    std::optional<MailCore::UUID> unanswered_; // the message that was awaited in vain
    sigc::connection watch_;
    sigc::signal<void()> signalShown_;
};

} // namespace TesselMail
