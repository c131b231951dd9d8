#pragma once

#include "MailCore/Platform/URL.h"
#include "TesselMail/Platform/Task.h"

namespace TesselMail {

/// What the application asks of the desktop beyond its panels.
class Desktop {
public:
    virtual ~Desktop() = default;
    /// Brings the main window, when there is one, in front of all others.
    virtual void present() = 0;
    /// Makes this application the one that opens mailto: links for the user. The answer tells whether that
    /// worked.
    virtual Later<bool> becomeMailHandler() = 0;
    /// Has the file manager show the folder of `file` with it selected. The answer tells whether there is
    /// one.
    virtual Later<bool> showInFolder(const MailCore::URL& file) = 0;
};

} // namespace TesselMail
