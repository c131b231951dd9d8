#pragma once

#include "Lock/LockedWebView.h"
#include "MailCore/Platform/Alive.h"
#include "TesselMail/Model/MailWebCoordinator.h"
#include "TesselMail/Views/LinkPopover.h"
#include "TesselMail/Views/WebKitReadingPage.h"

#include <glibmm/extraclassinit.h>
#include <gtkmm.h>
#include <webkit/webkit.h>

#include <optional>
#include <string>

namespace TesselMail {

class AppModel;

/// The locked web view that shows one message and navigates to nothing but its own empty page. `model`
/// outlives it.
class MailWebView : public Glib::ExtraClassInit, public Gtk::Overlay {
public:
    /// `locked` compiles its rules and has loaded nothing of its owner's.
    MailWebView(AppModel& model, std::unique_ptr<LockedWebView> locked);
    ~MailWebView() override;

    /// Shows what the model shows; called again after any change of it, of the theme or of the text size.
    void update(bool dark, bool interactive);
    /// Shows an empty page: what was closed, or is shown elsewhere, does not stay here.
    void clear(bool dark);
    /// Ends the page's process, which no longer answers; the next message gets a fresh one.
    void restart() { webkit_web_view_terminate_web_process(view_.get()); }
    /// The content on show, tagged with the model's selection version; nothing while a page is being made.
    std::optional<MailCore::UUID> shown() const { return coordinator_.shown(); }
    /// The rules that keep the page offline could not be compiled: nothing of the message may be shown here.
    bool lacksRules() const noexcept { return coordinator_.lacksRules(); }
    /// Emitted when another content is shown, and when the rules turn out to be lacking.
    sigc::signal<void()>& signalShown() { return signalShown_; }
    void focusText() { gtk_widget_grab_focus(GTK_WIDGET(view_.get())); }
    void closeLink() { link_.popdown(); }
    void showTexts();

private:
    void configure();
    std::uint32_t showPaper(bool dark);
    bool decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    bool press(guint key, Gdk::ModifierType modifiers);
    void moveFocus(bool forward);
    void leave(bool forward);
    void pointAt(WebKitHitTestResult* hit);
    void showTarget(std::string_view href, std::string_view text);
    void prepareMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit);
    void copyLink(const Glib::VariantBase& address);
    void showLink(const std::string& address, PageRectangle place);

    AppModel& model_;
    std::unique_ptr<LockedWebView> locked_;
    ObjectRef<WebKitWebView> view_;
    WebKitReadingPage page_;
    Gtk::Label target_; // the address under the pointer or the focus
    LinkPopover link_;
    Glib::RefPtr<Gio::SimpleAction> copyLink_;
    sigc::signal<void()> signalShown_;
    const MailCore::UUID emptyPage_ = MailCore::UUID::random();
    bool loadFailed_ = false;
    std::uint64_t loading_ = 0; // the navigation under way; 0 is the view's own first page
    MailWebCoordinator coordinator_;
    MailCore::Alive<MailWebView> alive_{*this};
};

} // namespace TesselMail
