#pragma once

#include "MailCore/Model/MessageEntry.h"

#include <memory>
#include <string_view>

namespace MailCore {

/// Keeps the entries of one index and their texts side by side in a few large blocks, so that an entry costs
/// its record, its characters and its handle, and no allocation of its own. A block lives as long as a handle
/// to one of its entries. Filled by one thread; handles may be read on others meanwhile.
class EntryArena {
public:
    /// A shared copy of `entry`.
    SharedEntry add(const MessageEntry& entry);

private:
    struct Block;
    std::shared_ptr<Block> block_;
    std::size_t nextCapacity_ = 1; // a single-message source needs just one
};

} // namespace MailCore
