#pragma once

#include "TesselMail/Platform/FilePanels.h"

#include <gtkmm.h>

namespace TesselMail {

/// The desktop's own panels, in front of `window`, which outlives this.
class NativeFilePanels : public FilePanels {
public:
    void attach(Gtk::Window* window) noexcept { window_ = window; }

    Later<std::vector<MailCore::URL>> open(OpenPanel panel) override;
    Later<std::optional<MailCore::URL>> save(SavePanel panel) override;

private:
    void run(Glib::RefPtr<Gtk::FileChooserNative> chooser,
             std::function<void(std::vector<MailCore::URL>)> finish);

    Gtk::Window* window_ = nullptr;
    Glib::RefPtr<Gtk::FileChooserNative> shown_; // kept while people choose
};

} // namespace TesselMail
