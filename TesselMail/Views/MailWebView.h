#pragma once

#include "TesselMail/Model/MailWebCoordinator.h"
#include "TesselMail/Views/LinkPopover.h"
#include "TesselMail/Views/WebMailPage.h"

#include <gtkmm.h>
#include <webkit/webkit.h>

#include <memory>
#include <string>

namespace TesselMail {

class AppModel;

/// The web view that shows one message: no scripts of the page, no storage, no network, no navigation but to
/// its own empty page. `model` outlives it.
class MailWebView : public Gtk::Overlay {
public:
    explicit MailWebView(AppModel& model);
    ~MailWebView() override;

    /// Shows what the model shows; called again after any change of it, of the theme or of the text size.
    void update(bool dark, bool interactive);
    void focusText() { gtk_widget_grab_focus(GTK_WIDGET(view_.get())); }
    void closeLink() { link_.popdown(); }
    void showTexts();

private:
    void configure();
    void compileRules();
    void rulesCompiled(GAsyncResult* result);
    bool decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    void pointAt(WebKitHitTestResult* hit);
    void prepareMenu(WebKitContextMenu* menu, WebKitHitTestResult* hit);
    void copyLink(const Glib::VariantBase& address);
    void showLink(const std::string& address, PageRectangle place);

    AppModel& model_;
    ObjectRef<WebKitNetworkSession> session_;
    ObjectRef<WebKitWebView> view_;
    WebMailPage page_;
    Gtk::Label target_; // the address under the pointer
    LinkPopover link_;
    Glib::RefPtr<Gio::SimpleAction> copyLink_;
    bool loadFailed_ = false;
    std::string rulesFolder_; // empty when it could not be made
    ObjectRef<WebKitUserContentFilterStore> rules_;
    std::shared_ptr<MailWebView*> self_; // emptied when this is gone
    MailWebCoordinator coordinator_;
};

} // namespace TesselMail
