#pragma once

#include "MailCore/Model/MailError.h"

#include <string>
#include <system_error>

namespace MailCore::Testing {

/// The error that `work` throws, as the name of its case; "none" when it throws nothing.
template <typename Work>
std::string errorOf(Work work) {
    try {
        work();
        return "none";
    } catch (const MailError& error) {
        return std::string(error.name());
    } catch (const std::system_error&) {
        return "platform";
    }
}

} // namespace MailCore::Testing
