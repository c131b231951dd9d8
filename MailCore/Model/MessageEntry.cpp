#include "MailCore/Model/MessageEntry.h"

namespace MailCore {

std::int64_t MessageEntry::metadataBytes() const noexcept {
    // What a handle, a list slot and the allocator add to the record and its texts.
    constexpr std::size_t overhead = 160;
    return static_cast<std::int64_t>(sizeof(MessageEntry) + overhead + subject.size() + from.size() +
                                     date.size() + recipients.size());
}

} // namespace MailCore
