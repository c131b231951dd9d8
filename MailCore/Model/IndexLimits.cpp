#include "MailCore/Model/IndexLimits.h"

#include "MailCore/Model/Limits.h"

#include <algorithm>

namespace MailCore {

IndexLimits::IndexLimits(std::int64_t messages, std::int64_t bytes) noexcept
    : messages_(std::clamp<std::int64_t>(messages, 0, Limits::messages)),
      bytes_(std::clamp<std::int64_t>(bytes, 0, Limits::indexBytes)) {}

} // namespace MailCore
