#pragma once

#include "MailCore/Platform/FileHandle.h"

#include <filesystem>
#include <sys/types.h>

namespace MailCore {

/// A file that is written beside its destination under a name of its own. It takes the place of the
/// destination in one step when it is complete, and disappears when it is not. Failed calls throw
/// std::system_error.
class ReplacingFile {
public:
    /// Who may do what with the file, before the process's mask: its owner alone, or everybody.
    enum class Access : mode_t { owner = 0600, everybody = 0666 };

    ReplacingFile(std::filesystem::path destination, Access access);
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;
    ~ReplacingFile();

    void write(ByteView bytes) const { handle_.writeAll(bytes); }
    /// What was written stands at the destination from now on, and is on the disk first.
    void replace();

private:
    std::filesystem::path destination_;
    std::filesystem::path path_; // empty once it has been moved
    FileHandle handle_;
};

} // namespace MailCore
