#include "MailCore/Platform/ReplacingFile.h"

#include "MailCore/Platform/UUID.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace MailCore {

namespace {

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

ReplacingFile::ReplacingFile(std::filesystem::path destination, Access access)
    : destination_(std::move(destination)),
      path_(destination_.parent_path() / (".TesselMail-" + UUID::random().text())),
      handle_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                     static_cast<mode_t>(access))) {
    if (!handle_.isOpen()) fail("create");
}

ReplacingFile::~ReplacingFile() {
    if (!path_.empty()) ::unlink(path_.c_str());
}

void ReplacingFile::replace() {
    // Some file systems cannot be asked, and say so.
    if (::fsync(handle_.descriptor()) != 0 && errno != EINVAL) fail("fsync");
    handle_.close();
    if (::rename(path_.c_str(), destination_.c_str()) != 0) fail("rename");
    path_.clear();
}

} // namespace MailCore
