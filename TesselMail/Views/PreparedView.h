#pragma once

#include "Lock/LockedWebView.h"

#include <memory>

namespace TesselMail {

/// The web view of a window that is still to be made, so that its processes start while the window is. Where
/// there can be none it says why.
struct PreparedView {
    enum class Lack { none, sandbox, folder };

    /// The display is connected.
    static PreparedView make();

    Lack lack = Lack::none;
    std::unique_ptr<LockedWebView> view;
};

} // namespace TesselMail
