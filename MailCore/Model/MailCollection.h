#pragma once

#include "MailCore/Model/MessageEntry.h"
#include "MailCore/Platform/UUID.h"

#include <string>

namespace MailCore {

/// One opened source with its entries.
struct MailCollection {
    UUID id = UUID::random();
    URL url;                        // what was opened: a file, or the folder of a Maildir or an "mbox" file
    EntryList entries;              // in `id` order
    std::string kind;               // one of SourceKinds
    bool isIndexing = false;        // entries are still arriving
    bool indexInterrupted = false;  // indexing stopped early: the entries are a prefix
    bool indexLimitReached = false; // the budget stopped indexing: the entries are a prefix
    std::int64_t metadataBytes = 0; // charged for the entries
};

} // namespace MailCore
