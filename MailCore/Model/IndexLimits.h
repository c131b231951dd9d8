#pragma once

#include <cstdint>

namespace MailCore {

/// The budget of one indexing run.
class IndexLimits {
public:
    /// Clamps both to 0 and the largest allowed (Limits::messages, Limits::indexBytes).
    IndexLimits(std::int64_t messages, std::int64_t bytes) noexcept;

    std::int64_t messages() const noexcept { return messages_; }
    /// Largest sum of MessageEntry::metadataBytes.
    std::int64_t bytes() const noexcept { return bytes_; }
    bool operator==(const IndexLimits&) const = default;

private:
    std::int64_t messages_;
    std::int64_t bytes_;
};

} // namespace MailCore
