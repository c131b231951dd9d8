#pragma once

#include <array>

namespace TesselMail {

/// A setting of the web view and what it is set to.
struct ViewSwitch {
    const char* name;
    bool on;
};

/// What a page of mail has no use for is off. Scripts of ours need `enable-javascript`; they live in a world
/// of their own, and those of the page, with their markup, are dead.
inline constexpr auto viewSwitches = std::to_array<ViewSwitch>({
    {"enable-javascript-markup", false},
    {"javascript-can-open-windows-automatically", false},
    {"javascript-can-access-clipboard", false},
    {"enable-fullscreen", false},
    {"enable-media", false},
    {"enable-webgl", false},
    {"enable-dns-prefetching", false},
    {"enable-page-cache", false},
    {"enable-html5-database", false},
    {"enable-html5-local-storage", false},
    {"enable-back-forward-navigation-gestures", false},
    {"enable-developer-extras", false},
});

} // namespace TesselMail
