#include "TesselMail/Model/Preferences.h"

#include "TesselMail/Model/ApplicationID.h"

#include <glib.h>

#include <cmath>
#include <memory>
#include <utility>

namespace TesselMail {
namespace {

constexpr const char* group = "Preferences";
constexpr const char* languageKey = "language";
constexpr const char* appearanceKey = "appearance";
constexpr const char* textSizeKey = "textSize";

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;

KeyFile load(const std::string& path) {
    KeyFile file(g_key_file_new(), g_key_file_unref);
    g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    return file;
}

std::string stringOf(GKeyFile* file, const char* key, std::string otherwise) {
    const std::unique_ptr<char, decltype(&g_free)> value(g_key_file_get_string(file, group, key, nullptr),
                                                         g_free);
    return value ? std::string(value.get()) : std::move(otherwise);
}

double numberOf(GKeyFile* file, const char* key, double otherwise) {
    GError* error = nullptr;
    const double value = g_key_file_get_double(file, group, key, &error);
    if (error) g_error_free(error);
    return !error && std::isfinite(value) ? value : otherwise;
}

std::vector<std::string> systemLanguages() {
    std::vector<std::string> languages;
    for (const char* const* name = g_get_language_names(); *name; ++name) languages.emplace_back(*name);
    return languages;
}

} // namespace

Preferences::Preferences(std::string path, std::vector<std::string> languages)
    : path_(std::move(path)), languages_(std::move(languages)) {
    read();
}

Preferences Preferences::ofUser() {
    const std::unique_ptr<char, decltype(&g_free)> path(
        g_build_filename(g_get_user_config_dir(), applicationID, "preferences.ini", nullptr), g_free);
    return Preferences(path.get(), systemLanguages());
}

void Preferences::setLanguage(std::string language) {
    if (language == language_) return;
    language_ = std::move(language);
    store();
    changed_.emit();
}

void Preferences::setAppearance(std::string appearance) {
    if (appearance == appearance_) return;
    appearance_ = std::move(appearance);
    store();
    changed_.emit();
}

void Preferences::setTextSize(double points) {
    if (points == textSize_ || !std::isfinite(points)) return;
    textSize_ = points;
    store();
    changed_.emit();
}

bool Preferences::chinese() const noexcept {
    if (language_ == "auto") return !languages_.empty() && languages_.front().starts_with("zh");
    return language_ == "zh-CN";
}

void Preferences::read() {
    const KeyFile file = load(path_);
    language_ = stringOf(file.get(), languageKey, language_);
    appearance_ = stringOf(file.get(), appearanceKey, appearance_);
    textSize_ = numberOf(file.get(), textSizeKey, textSize_);
}

// A setting that cannot be kept (a full disk, a read-only folder) still holds until the program ends.
void Preferences::store() const {
    const KeyFile file = load(path_);
    g_key_file_set_string(file.get(), group, languageKey, language_.c_str());
    g_key_file_set_string(file.get(), group, appearanceKey, appearance_.c_str());
    g_key_file_set_double(file.get(), group, textSizeKey, textSize_);
    const std::unique_ptr<char, decltype(&g_free)> folder(g_path_get_dirname(path_.c_str()), g_free);
    g_mkdir_with_parents(folder.get(), 0700);
    g_key_file_save_to_file(file.get(), path_.c_str(), nullptr);
}

} // namespace TesselMail
