#pragma once

#include "MailCore/Platform/URL.h"
#include "TesselMail/Model/Texts.h"

#include <exception>
#include <optional>

namespace TesselMail {

/// What people can do about a failure.
enum class Remedy { none, tryAgain, reopen };

/// What was being done when it failed.
struct FailedWork {
    enum class Kind { reading, saving };

    Kind kind = Kind::reading;
    std::optional<MailCore::URL> source; // the file or folder that was read; for saving, what is saved
};

/// What people are told of a failure.
struct Failure {
    Phrase text;
    Remedy remedy = Remedy::none;
    bool operator==(const Failure&) const = default;
};

/// Names the cause where the system proves one (a missing file, a missing permission, a full disk); otherwise
/// says what errorText says. Looks at the source in the file system, so it is called soon after the failure
/// and for local files.
Failure failureText(const std::exception_ptr& error, const FailedWork& work);

} // namespace TesselMail
