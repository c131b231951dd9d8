#pragma once

#include <exception>
#include <string_view>

namespace MailCore {

/// What engine operations throw. Failed system calls are thrown on as std::system_error.
class MailError final : public std::exception {
public:
    enum class Case {
        tooLarge,
        malformed,
        unsupported,
        tooMany,
        cancelled,
        sourceChanged,
        unsafeDestination
    };
    using enum Case;

    MailError(Case which) noexcept : which_(which) {}

    Case which() const noexcept { return which_; }
    /// The name of the case, as in "malformed".
    std::string_view name() const noexcept;
    /// One English sentence for the case, for developers: of the engine, which knows of no language and no
    /// window. People read what TesselMail's errorText says, in other words for most cases.
    std::string_view errorDescription() const noexcept;
    const char* what() const noexcept override { return errorDescription().data(); }

    bool operator==(const MailError& other) const noexcept { return which_ == other.which_; }

private:
    Case which_;
};

} // namespace MailCore
