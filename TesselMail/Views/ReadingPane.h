#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/Task.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/AttachmentBar.h"
#include "TesselMail/Views/CaptureView.h"
#include "TesselMail/Views/MailWebView.h"
#include "TesselMail/Views/MessageHeader.h"

#include <gtkmm.h>

#include <memory>
#include <optional>

namespace TesselMail {

/// The message on show: its header, its attachments and the reading view; or why there is none. `model`
/// outlives it.
class ReadingPane : public Gtk::Box {
public:
    explicit ReadingPane(AppModel& model);
    ~ReadingPane() override;

    Adwaita::HeaderBar& header() noexcept { return header_; }
    /// Moves the focus into the text of the message.
    void focusBody();

private:
    static Task prepareView(std::shared_ptr<ReadingPane*> self);
    void makeView(bool sandboxed);
    void showTexts();
    void showMessage();
    void showHeader();
    void showPage();
    void showBody();
    void showReading();
    void showSpinner();
    void readAgain();

    AppModel& model_;
    Adwaita::HeaderBar header_;
    Gtk::ToggleButton details_;
    Gtk::Button export_;
    Gtk::Spinner spinner_;
    sigc::connection spinnerDelay_;
    Gtk::Stack stack_;
    Adwaita::StatusPage select_{"mail-read-symbolic"};
    Adwaita::StatusPage large_{"mail-unread-symbolic"};
    Adwaita::StatusPage failed_{"dialog-warning-symbolic"};
    Gtk::Button tryAgain_;
    Gtk::Box empty_;
    CaptureView capture_;
    Gtk::Box message_{Gtk::Orientation::VERTICAL};
    MessageHeader messageHeader_;
    AttachmentBar attachments_;
    std::optional<MailWebView> web_; // where its sandbox can start
    Gtk::ScrolledWindow plainScroller_;
    Gtk::TextView plain_;
    bool usePlain_ = false;
    bool slow_ = false;                  // the message that is being read lets people wait
    std::shared_ptr<ReadingPane*> self_; // emptied when this is gone
};

} // namespace TesselMail
