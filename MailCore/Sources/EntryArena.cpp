#include "MailCore/Sources/EntryArena.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace MailCore {

struct EntryArena::Block {
    static constexpr std::size_t textBlock = 16'384;

    explicit Block(std::size_t capacity) : capacity(capacity) { entries.reserve(capacity); }

    EntryText keep(std::string_view text) {
        if (text.empty()) return {};
        if (text.size() > room.size()) {
            // A single-message block asks for what it needs, a full one for a shared piece.
            const std::size_t size = capacity == 1 ? text.size() : std::max(text.size(), textBlock);
            texts.push_back(std::make_unique_for_overwrite<char[]>(size));
            room = std::span(texts.back().get(), size);
        }
        std::memcpy(room.data(), text.data(), text.size());
        const std::string_view kept(room.data(), text.size());
        room = room.subspan(text.size());
        return EntryText::borrowing(kept);
    }

    const std::size_t capacity;
    std::vector<MessageEntry> entries; // never grows past its capacity: handles point into it
    std::vector<std::unique_ptr<char[]>> texts;
    std::span<char> room;
};

SharedEntry EntryArena::add(const MessageEntry& entry) {
    if (!block_ || block_->entries.size() == block_->capacity) {
        block_ = std::make_shared<Block>(nextCapacity_);
        nextCapacity_ = std::min<std::size_t>(nextCapacity_ * 8, 512);
    }
    block_->entries.push_back({
        .id = entry.id,
        .subject = block_->keep(entry.subject),
        .from = block_->keep(entry.from),
        .date = block_->keep(entry.date),
        .offset = entry.offset,
        .length = entry.length,
        .file = entry.file,
        .revision = entry.revision,
        .recipients = block_->keep(entry.recipients),
        .timestamp = entry.timestamp,
    });
    return SharedEntry(block_, &block_->entries.back());
}

} // namespace MailCore
