#pragma once

#include <cstdlib>

namespace TesselMail::Testing {

/// Whether the web view's sandbox can start, which it cannot in a chroot: the window shows plain text there.
inline bool hasSandbox() {
    return std::system("bwrap --unshare-user --ro-bind / / true >/dev/null 2>&1") == 0;
}

} // namespace TesselMail::Testing
