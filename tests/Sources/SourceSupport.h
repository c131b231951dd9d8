#pragma once

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Sources/MailReader.h"

#include <gtest/gtest.h>

namespace MailCore::Testing {

/// Opens `url` within all limits.
inline MailCollection collectionOf(const URL& url,
                                   const IndexLimits& limits = {Limits::messages, Limits::indexBytes}) {
    return MailReader::collection(
        url, never, [](std::size_t) {}, limits, [](std::span<const SharedEntry>) {});
}

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
