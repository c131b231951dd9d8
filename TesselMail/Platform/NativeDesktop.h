#pragma once

#include "TesselMail/Platform/Desktop.h"

#include <functional>
#include <string>
#include <string_view>

namespace TesselMail {

/// The desktop the program runs on, which knows it by its reverse-domain identifier.
class NativeDesktop : public Desktop {
public:
    explicit NativeDesktop(std::string_view applicationID);

    /// What brings the main window to the front.
    void attach(std::function<void()> present) { present_ = std::move(present); }

    void present() override;
    Later<bool> becomeMailHandler() override;
    Later<bool> showInFolder(const MailCore::URL& file) override;
    /// Whether this application is the one that opens mailto: links for the user.
    bool handlesMail() const;

private:
    const std::string desktopEntry_; // the name of its file
    std::function<void()> present_;
};

} // namespace TesselMail
