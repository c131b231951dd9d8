#include "TesselMail/Model/WindowState.h"

#include "TesselMail/Model/ApplicationID.h"

#include <glib.h>

#include <cmath>
#include <memory>
#include <utility>

namespace TesselMail {
namespace {

constexpr const char* group = "Window";
constexpr int smallest = 100; // pixels, of anything
constexpr int largest = 16'384;

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;

std::optional<int> lengthOf(GKeyFile* file, const char* key) {
    GError* error = nullptr;
    const int value = g_key_file_get_integer(file, group, key, &error);
    if (error) {
        g_error_free(error);
        return std::nullopt;
    }
    return value < smallest || value > largest ? std::nullopt : std::optional(value);
}

bool flagOf(GKeyFile* file, const char* key, bool otherwise) {
    GError* error = nullptr;
    const bool value = g_key_file_get_boolean(file, group, key, &error) != FALSE;
    if (!error) return value;
    g_error_free(error);
    return otherwise;
}

} // namespace

WindowState::WindowState(std::string path) : path_(std::move(path)) {
    const KeyFile file(g_key_file_new(), g_key_file_unref);
    g_key_file_load_from_file(file.get(), path_.c_str(), G_KEY_FILE_NONE, nullptr);
    width = lengthOf(file.get(), "width").value_or(width);
    height = lengthOf(file.get(), "height").value_or(height);
    maximized = flagOf(file.get(), "maximized", maximized);
    sidebarWidth = lengthOf(file.get(), "sidebarWidth").value_or(sidebarWidth);
    if (const auto stored = lengthOf(file.get(), "listWidth")) listWidth = *stored;
    newestFirst = flagOf(file.get(), "newestFirst", newestFirst);
}

WindowState WindowState::ofUser() {
    const std::unique_ptr<char, decltype(&g_free)> path(
        g_build_filename(g_get_user_state_dir(), applicationID, "window.ini", nullptr), g_free);
    return WindowState(path.get());
}

void WindowState::store() const {
    const KeyFile file(g_key_file_new(), g_key_file_unref);
    g_key_file_set_integer(file.get(), group, "width", width);
    g_key_file_set_integer(file.get(), group, "height", height);
    g_key_file_set_boolean(file.get(), group, "maximized", maximized);
    g_key_file_set_integer(file.get(), group, "sidebarWidth", sidebarWidth);
    if (listWidth)
        g_key_file_set_integer(file.get(), group, "listWidth", static_cast<int>(std::lround(*listWidth)));
    g_key_file_set_boolean(file.get(), group, "newestFirst", newestFirst);
    const std::unique_ptr<char, decltype(&g_free)> folder(g_path_get_dirname(path_.c_str()), g_free);
    g_mkdir_with_parents(folder.get(), 0700);
    g_key_file_save_to_file(file.get(), path_.c_str(), nullptr);
}

} // namespace TesselMail
