#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/AttachmentBar.h"
#include "TesselMail/Views/CaptureView.h"
#include "TesselMail/Views/MessageBody.h"
#include "TesselMail/Views/MessageHeader.h"

#include <gtkmm.h>

namespace TesselMail {

/// The message on show: its header, its attachments and the reading view; or why there is none. `model`
/// outlives it.
class ReadingPane : public Gtk::Box {
public:
    ReadingPane(AppModel& model, PreparedView prepared);
    ~ReadingPane() override;

    Adwaita::HeaderBar& header() noexcept { return header_; }
    /// Moves the focus into the text of the message, or to what stands in its place.
    void focusBody();
    const Glib::RefPtr<Gio::SimpleAction>& plainTextAction() const noexcept {
        return body_.plainTextAction();
    }

private:
    void showTexts();
    void showMessage();
    void showHeader();
    void showPage();
    void showBody();
    void hideOther();
    void bodyShown();
    void closeLink();
    void showReading();
    void showSpinner();
    void showFailure();
    void applyRemedy();

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
    Gtk::Button remedy_; // of the failure: reading once more, or opening the source again
    Gtk::Box empty_;
    CaptureView capture_;
    Gtk::Box message_{Gtk::Orientation::VERTICAL};
    MessageHeader messageHeader_;
    AttachmentBar attachments_;
    MessageBody body_;
    sigc::connection otherDelay_;
    bool wantsFocus_ = false; // the next message gets the focus, which the captured link had
    bool slow_ = false;       // the message that is being read lets people wait
};

} // namespace TesselMail
