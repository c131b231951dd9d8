#include "MailCore/Model/ContentBudget.h"

#include "MailCore/Model/MailError.h"

#include <algorithm>
#include <limits>

namespace MailCore {

void ContentBudget::charge(std::size_t size) {
    using Range = std::numeric_limits<std::int64_t>;
    const auto cost = static_cast<std::int64_t>(std::min<std::uint64_t>(size, Range::max()));
    left_.bytes = left_.bytes < Range::min() + cost ? Range::min() : left_.bytes - cost;
    if (left_.bytes < 0) throw MailError(MailError::tooLarge);
}

void ContentBudget::countPart() {
    if (--left_.parts < 0) throw MailError(MailError::tooMany);
}

ContentBudget::Level ContentBudget::deeper() {
    if (left_.levels <= 0) throw MailError(MailError::tooMany);
    return Level(left_);
}

} // namespace MailCore
