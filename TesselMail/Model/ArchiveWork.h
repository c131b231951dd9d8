#pragma once

#include "MailCore/Model/IndexLimits.h"
#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "TesselMail/Model/Cancellation.h"
#include "TesselMail/Model/IndexDelivery.h"
#include "TesselMail/Model/ScopedMailFile.h"
#include "TesselMail/Platform/Task.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Engine work off the interface thread. Each operation runs on one of three serial queues (indexing,
/// reading, searching) and resumes the awaiting task once, on the interface thread, with its result or error.
/// Stopping the token ends the work at its next check with MailError::cancelled. A scope is kept while the
/// work runs.
namespace TesselMail::ArchiveWork {

/// A decoded message and what the reading view shows of it.
struct ReadMessage {
    std::shared_ptr<const MailCore::MailMessage> message;
    std::shared_ptr<const MailCore::RenderedMail> rendered;
};

/// Entries in their order of display, shared because a list may hold 200,000 of them.
using SharedList = std::shared_ptr<const MailCore::EntryList>;

/// Indexes the file or folder of `scope`; entries go to `delivery` while it runs.
Later<MailCore::MailCollection> index(MailFileScope scope, MailCore::IndexLimits limits,
                                      CancellationToken token, std::shared_ptr<IndexDelivery> delivery);

/// Whether the file of `proof`, the entry that stands for its collection, is still what was indexed; false
/// for null and once the token is stopped. Never throws.
Later<bool> isCurrent(MailCore::SharedEntry proof, MailFileScope scope, CancellationToken token);

/// Reads, decodes and renders one message. `scope` may be null.
Later<ReadMessage> read(MailCore::SharedEntry entry, MailFileScope scope, CancellationToken token);

/// Turns an attached message into a readable one: what its producer decoded, or its bytes.
Later<ReadMessage> attachment(std::shared_ptr<const MailCore::MailAttachment> attachment,
                              CancellationToken token);

/// Writes the message's original bytes to `destination`. `scope` may be null.
Later<Done> exportOriginal(MailCore::SharedEntry entry, MailCore::URL destination, MailFileScope scope,
                           CancellationToken token);

/// Writes `bytes` to the local file `destination`, whole or not at all. Throws std::system_error.
Later<Done> write(std::shared_ptr<const MailCore::Bytes> bytes, MailCore::URL destination);

/// What a search found, in order of display.
struct SearchResults {
    SharedList entries = std::make_shared<const MailCore::EntryList>();
    std::int64_t unreadable = 0; // messages that could not be searched
};

/// The entries whose messages contain `query`, all when it is blank: by date, undated ones last, equal ones
/// by id.
Later<SearchResults> search(MailCore::EntryList entries, std::string query, bool newestFirst,
                            std::vector<MailFileScope> scopes, CancellationToken token);

/// Releases what is no longer shown away from the interface thread: letting go of a long list takes a while.
void release(SharedList list);

/// Waits until every queue has run what it was given, and ends their threads. Called once, when the main loop
/// has ended and all tokens are stopped.
void finish();

} // namespace TesselMail::ArchiveWork
