#include "TesselMail/Model/FailureText.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/FileHandle.h"
#include "TesselMail/Model/ErrorText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace TesselMail {

namespace {

using MailCore::MailError;

// A cause that the system's error number proves.
struct Cause {
    FailedWork::Kind kind;
    int number;
    const Phrase* text;
};

constexpr auto causes = std::to_array<Cause>({
    {FailedWork::Kind::reading, ENOENT, &Texts::fileMissing},
    {FailedWork::Kind::reading, ENOTDIR, &Texts::fileMissing},
    {FailedWork::Kind::reading, EACCES, &Texts::mayNotRead},
    {FailedWork::Kind::reading, EPERM, &Texts::mayNotRead},
    {FailedWork::Kind::saving, EACCES, &Texts::mayNotSave},
    {FailedWork::Kind::saving, EPERM, &Texts::mayNotSave},
    {FailedWork::Kind::saving, EROFS, &Texts::mayNotSave},
    {FailedWork::Kind::saving, ENOSPC, &Texts::diskFull},
    {FailedWork::Kind::saving, EDQUOT, &Texts::diskFull},
});

const Phrase* causeOf(FailedWork::Kind kind, int number) {
    const auto found = std::ranges::find_if(
        causes, [&](const Cause& cause) { return cause.kind == kind && cause.number == number; });
    return found == causes.end() ? nullptr : found->text;
}

// The error number with which the system refuses to open a source; 0 when it opens it.
int refusalOf(const std::string& path) {
    const MailCore::FileHandle handle(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    return handle.isOpen() ? 0 : errno;
}

// What keeps the messages of a folder from being read; a folder need not hold all of these.
const Phrase* causeInFolder(const std::string& path, const MailError& error) {
    const std::string archive = path + "/" + std::string(MailCore::SourceKinds::mailboxFile);
    struct stat status {};
    if (::lstat(archive.c_str(), &status) == 0 || error == MailError(MailError::malformed))
        return causeOf(FailedWork::Kind::reading, refusalOf(archive)) == &Texts::mayNotRead
                   ? &Texts::mayNotRead
                   : nullptr;
    for (const char* const name : {"/cur", "/new"})
        if (causeOf(FailedWork::Kind::reading, refusalOf(path + name)) == &Texts::mayNotRead)
            return &Texts::mayNotRead;
    return nullptr;
}

// The engine does not say why a source could not be read, so the file system is asked.
const Phrase* causeInSource(const FailedWork& work, const MailError& error) {
    const bool unreadable = error == MailError(MailError::malformed);
    if (!work.source || !work.source->isFile()) return nullptr;
    if (!unreadable && !(error == MailError(MailError::unsupported))) return nullptr;
    const std::string path = work.source->path();
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return causeOf(FailedWork::Kind::reading, errno);
    if (S_ISDIR(status.st_mode)) return causeInFolder(path, error);
    return unreadable ? causeOf(FailedWork::Kind::reading, refusalOf(path)) : nullptr;
}

} // namespace

Failure failureText(const std::exception_ptr& error, const FailedWork& work) {
    const Phrase& general = errorText(error);
    try {
        std::rethrow_exception(error);
    } catch (const MailError& mailError) {
        if (mailError == MailError(MailError::sourceChanged)) return {general, Remedy::reopen};
        const Phrase* const cause = causeInSource(work, mailError);
        return cause ? Failure{*cause, Remedy::tryAgain} : Failure{general, Remedy::none};
    } catch (const std::system_error& systemError) {
        const Phrase* const cause = causeOf(work.kind, systemError.code().value());
        return {cause ? *cause : general, Remedy::tryAgain};
    } catch (...) {
        return {general, Remedy::tryAgain};
    }
}

} // namespace TesselMail
