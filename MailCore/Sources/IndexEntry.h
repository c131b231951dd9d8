#pragma once

#include "MailCore/Model/MailMessage.h"
#include "MailCore/Model/MessageEntry.h"

#include <span>

namespace MailCore::MailReader {

/// Where a message stands.
struct MessageRange {
    ByteOffset offset = 0;
    std::int64_t length = 0;
};

/// The index record of a message with the header `fields`, its texts decoded and cut to what an entry holds.
MessageEntry indexEntry(std::int64_t id, std::span<const Header> fields, const MessageRange& range,
                        const URL& file, const FileRevision& revision);

} // namespace MailCore::MailReader
