#pragma once

#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Platform/UUID.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace MailCore::Testing {

/// A folder of its own for one test, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() / ("tessel-" + UUID::random().lowerText())) {
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path path(std::string_view name = "") const {
        return name.empty() ? path_ : path_ / name;
    }
    URL url(std::string_view name = "") const { return URL::file(path(name).string()); }

    /// Writes a file, its folders included, and answers its address.
    URL write(std::string_view name, std::string_view content) const {
        std::filesystem::create_directories(path(name).parent_path());
        std::ofstream(path(name), std::ios::binary) << content;
        return url(name);
    }
    std::string read(std::string_view name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t count(std::string_view name = "") const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path(name)), {}));
    }
    /// Gives the file another modification time, as an edit would.
    void touch(std::string_view name) const {
        const auto time = std::filesystem::last_write_time(path(name));
        std::filesystem::last_write_time(path(name), time + std::chrono::seconds(5));
    }

private:
    std::filesystem::path path_;
};

} // namespace MailCore::Testing
