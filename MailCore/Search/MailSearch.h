#pragma once

#include "MailCore/Model/Cancelled.h"
#include "MailCore/Model/MessageEntry.h"
#include "MailCore/Search/CaseFolding.h"

#include <cstdint>
#include <span>
#include <string_view>

/// Finds the messages that contain a text, as TextQuery compares them, and puts lists in order. Works on the
/// entries of any number of collections together; no index is kept.
namespace MailCore::MailSearch {

struct Results {
    EntryList entries; // those that match, in the order given
    std::int64_t unreadable =
        0; // messages that did not match by their entry and could not be read or decoded
    bool operator==(const Results&) const = default;
};

/// The messages whose entry (subject, sender, recipients) or text (To, Cc, plain text, the text of the HTML)
/// contains `query`; all of them, unread, when it holds only white space. A message is read only when its
/// entry does not match, one at a time, and attachments of MIME messages are not decoded. Throws
/// MailError::sourceChanged when a file is no longer the one that was indexed, and cancelled; any other
/// failure of a message is counted.
Results scan(std::span<const SharedEntry> entries, std::string_view query, const Cancelled& cancelled,
             CaseFolding::Rules rules = CaseFolding::userRules());

/// The entries that contain `query` themselves, in the order given; all when it holds only white space. Reads
/// no file. Throws MailError::cancelled.
EntryList matching(std::span<const SharedEntry> entries, std::string_view query, const Cancelled& cancelled,
                   CaseFolding::Rules rules = CaseFolding::userRules());

/// The same entries by date in the wanted direction, undated ones last in both, equal ones by ascending id
/// and otherwise in the order given.
EntryList ordered(EntryList entries, bool newestFirst);

} // namespace MailCore::MailSearch
