#pragma once

#include "TesselMail/Platform/FilePanels.h"

#include <gtkmm.h>

#include <functional>

namespace TesselMail {

/// The desktop's own panels, in front of the attached window. What people choose in them never gets into the
/// desktop's list of recent files: names of mail are private.
class NativeFilePanels : public FilePanels {
public:
    NativeFilePanels();
    ~NativeFilePanels() override;

    /// Panels stand in front of `window` from now on; one that is open for the window before it is left.
    void attach(Gtk::Window* window);

    Later<std::vector<MailCore::URL>> open(OpenPanel panel) override;
    Later<std::optional<MailCore::URL>> save(SavePanel panel) override;

private:
    using Finish = std::function<void(std::vector<MailCore::URL>)>;

    void run(Glib::RefPtr<Gtk::FileChooserNative> chooser, Finish finish);
    void respond(int response);
    void leave();

    Gtk::Window* window_ = nullptr;
    Glib::RefPtr<Gtk::FileChooserNative> shown_; // while people choose
    Finish finish_;                              // of the panel that is shown
    Glib::RefPtr<Gio::File> folder_;             // where people chose last
};

} // namespace TesselMail
