#pragma once

#include <string_view>

namespace TesselMail {

/// A command of the window or of the application.
struct Action {
    const char* path; // by which menus, buttons and keys name it: its group, a dot and its name

    /// By which its group has it.
    constexpr const char* name() const noexcept { return path + std::string_view(path).find('.') + 1; }
};

/// Every command, which views and menus name by these.
namespace Actions {

inline constexpr Action open{"win.open"};
inline constexpr Action openFolder{"win.open-folder"};
inline constexpr Action closeAll{"win.close-all"};
inline constexpr Action exportOriginal{"win.export-original"};
inline constexpr Action search{"win.search"};
inline constexpr Action details{"win.details"};
inline constexpr Action plainText{"win.plain-text"};
inline constexpr Action nextMessage{"win.next-message"};
inline constexpr Action previousMessage{"win.previous-message"};
inline constexpr Action nextPane{"win.next-pane"};
inline constexpr Action previousPane{"win.previous-pane"};
inline constexpr Action widenPane{"win.widen-pane"};
inline constexpr Action narrowPane{"win.narrow-pane"};
inline constexpr Action back{"win.back"};
inline constexpr Action settings{"win.settings"};
inline constexpr Action shortcuts{"win.shortcuts"};
inline constexpr Action about{"app.about"};
inline constexpr Action quit{"app.quit"};

inline constexpr Action closeWindow{"window.close"}; // the toolkit's own

} // namespace Actions
} // namespace TesselMail
