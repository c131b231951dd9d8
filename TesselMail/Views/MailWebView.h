#pragma once

#include "TesselMail/Model/MailWebCoordinator.h"
#include "TesselMail/Platform/Alive.h"
#include "TesselMail/Views/LinkPopover.h"
#include "TesselMail/Views/WebKitReadingPage.h"

#include <glibmm/extraclassinit.h>
#include <gtkmm.h>
#include <webkit/webkit.h>

#include <optional>
#include <string>

namespace TesselMail {

class AppModel;

/// The web view that shows one message: no scripts of the page, no storage, no network, no navigation but to
/// its own empty page. `model` outlives it.
class MailWebView : public Glib::ExtraClassInit, public Gtk::Overlay {
public:
    /// `rulesFolder` comes from `makeRulesFolder` and is removed again.
    MailWebView(AppModel& model, std::string rulesFolder);
    ~MailWebView() override;

    /// A folder of this run's own for the compiled rules, which are of no use to anybody else; empty when it
    /// cannot be made. Without it no web view is made: its processes need the same place, and end the program
    /// where there is none.
    static std::string makeRulesFolder();

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
    void compileRules();
    void rulesCompiled(GAsyncResult* result);
    bool decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    bool press(guint key, Gdk::ModifierType modifiers);
    void moveFocus(bool forward);
    void leave(bool forward);
    void pointAt(WebKitHitTestResult* hit);
    void prepareMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit);
    void copyLink(const Glib::VariantBase& address);
    void showLink(const std::string& address, PageRectangle place);

    AppModel& model_;
    ObjectRef<WebKitNetworkSession> session_;
    ObjectRef<WebKitWebView> view_;
    WebKitReadingPage page_;
    Gtk::Label target_; // the address under the pointer
    LinkPopover link_;
    Glib::RefPtr<Gio::SimpleAction> copyLink_;
    sigc::signal<void()> signalShown_;
    const MailCore::UUID emptyPage_ = MailCore::UUID::random();
    bool loadFailed_ = false;
    std::string rulesFolder_;
    ObjectRef<WebKitUserContentFilterStore> rules_;
    MailWebCoordinator coordinator_;
    Alive<MailWebView> alive_{*this};
};

} // namespace TesselMail
