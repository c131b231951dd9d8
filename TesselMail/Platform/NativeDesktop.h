#pragma once

#include "TesselMail/Platform/Desktop.h"

#include <functional>

namespace TesselMail {

/// The desktop the program runs on.
class NativeDesktop : public Desktop {
public:
    /// What brings the main window to the front.
    void attach(std::function<void()> present) { present_ = std::move(present); }

    void present() override;
    Later<bool> becomeMailHandler() override;
    /// Whether this application is the one that opens mailto: links for the user.
    static bool handlesMail();

private:
    std::function<void()> present_;
};

} // namespace TesselMail
