#pragma once

#include "MailCore/Platform/Alive.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <adwaita.h>
#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// Words that come up over the window's foot and go by themselves: that a file was saved, with a button that
/// shows it in its folder. A screen reader speaks them. `model` outlives it.
class Toasts {
public:
    explicit Toasts(AppModel& model);
    Toasts(const Toasts&) = delete;
    Toasts& operator=(const Toasts&) = delete;
    ~Toasts();

    Gtk::Widget& widget() const;
    /// What the words stand over.
    void setChild(Gtk::Widget& child);
    void tell(const std::string& text);

private:
    AdwToast* make(const std::string& text);
    void present(AdwToast* toast);
    void saved(const MailCore::URL& file);
    static Task showInFolder(MailCore::Alive<Toasts>::Handle self, MailCore::URL file);

    AppModel& model_;
    AdwToastOverlay* overlay_;
    ObjectWatch<AdwToast> shown_;
    sigc::connection saved_;
    MailCore::Alive<Toasts> alive_{*this};
};

} // namespace TesselMail
