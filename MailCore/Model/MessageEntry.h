#pragma once

#include "MailCore/Model/EntryText.h"
#include "MailCore/Model/FileRevision.h"
#include "MailCore/Platform/Bytes.h"
#include "MailCore/Platform/URL.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace MailCore {

/// The index record of one message of an opened source.
struct MessageEntry {
    std::int64_t id = 0;     // position in its collection, from 0
    EntryText subject;       // decoded, at most 1,024 characters
    EntryText from;          // decoded, at most 1,024 characters
    EntryText date;          // the Date header as written, at most 256 characters
    ByteOffset offset = 0;   // of the message's first byte in `file`
    std::int64_t length = 0; // bytes
    URL file;
    std::optional<FileRevision> revision = std::nullopt; // of `file` when the entry was made
    EntryText recipients = {};                           // decoded To, Cc and Bcc, at most 2,048 characters
    std::optional<double> timestamp = std::nullopt;      // seconds since 1970-01-01 UTC

    /// What the entry is charged in an index budget, in bytes.
    std::int64_t metadataBytes() const noexcept;
    bool operator==(const MessageEntry&) const = default;
};

/// Entries are made once and then shared: a list, a sorted list and a snapshot of 200,000 messages cost
/// handles.
using SharedEntry = std::shared_ptr<const MessageEntry>;
using EntryList = std::vector<SharedEntry>;

} // namespace MailCore
