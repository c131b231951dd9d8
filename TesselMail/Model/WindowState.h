#pragma once

#include <optional>
#include <string>

namespace TesselMail {

/// How people left the window: its size, the widths of its panes and the order of the list. Kept in a key
/// file of its own, apart from the settings. Interface thread only.
class WindowState {
public:
    /// Reads `path` once; what is missing, of the wrong type or out of bounds has its default.
    explicit WindowState(std::string path);
    /// The state kept for the user who runs the program.
    static WindowState ofUser();

    int width = 1'280; // pixels; the reading pane holds 78 columns of a plain letter then
    int height = 780;
    bool maximized = false;
    int sidebarWidth = 240;
    std::optional<double> listWidth; // nothing until people have changed it
    bool newestFirst = true;

    /// Writes all of it, whole or not at all. If that fails, the window has its former state the next time.
    void store() const;

private:
    std::string path_;
};

} // namespace TesselMail
