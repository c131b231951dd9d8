#pragma once

#include "MailCore/Model/Limits.h"
#include "MailCore/Sources/MailReader.h"
#include "tests/Support/Errors.h"

#include <gtest/gtest.h>

namespace MailCore::Testing {

/// Opens `url` within all limits.
inline MailCollection collectionOf(const URL& url,
                                   const IndexLimits& limits = {Limits::messages, Limits::indexBytes}) {
    return MailReader::collection(
        url, never, [](std::size_t) {}, limits, [](std::span<const SharedEntry>) {});
}

} // namespace MailCore::Testing
