#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace MailCore::Outlook {

/// The fixed-size properties of a message, a recipient or an attachment: the whole records of its property
/// stream (MS-OXMSG §2.4), 64-bit values by 32-bit tag. Kept as bytes, because of thousands of records only a
/// few are ever asked for.
class Properties {
public:
    Properties() = default;
    /// The records begin `header` bytes into `stream`, which has as many; half a record at its end does not
    /// count.
    Properties(Bytes stream, std::size_t header) : stream_(std::move(stream)), header_(header) {}

    /// The value with the tag `tag`; of several the last. Linear in the number of records.
    std::optional<std::uint64_t> operator[](std::uint32_t tag) const noexcept;

private:
    Bytes stream_;
    std::size_t header_ = 0;
};

} // namespace MailCore::Outlook
