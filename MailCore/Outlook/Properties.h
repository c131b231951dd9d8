#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <optional>

namespace MailCore::Outlook {

/// The fixed-size properties of a message, a recipient or an attachment: the whole records of its property
/// stream (MS-OXMSG §2.4), 64-bit values by 32-bit tag. Kept as bytes, because of thousands of records only a
/// few are ever asked for.
class Properties {
public:
    Properties() = default;
    /// `records` is the stream without its header; half a record at its end does not count.
    explicit Properties(Bytes records) : records_(std::move(records)) {}

    /// The value with the tag `tag`; of several the last. Linear in the number of records.
    std::optional<std::uint64_t> operator[](std::uint32_t tag) const noexcept;

private:
    Bytes records_;
};

} // namespace MailCore::Outlook
