#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstddef>

namespace MailCore {

/// The unsigned little-endian integer in the first bytes of `bytes`, which has at least as many.
template <typename Integer>
constexpr Integer littleEndian(ByteView bytes) noexcept {
    Integer value = 0;
    for (std::size_t index = 0; index < sizeof(Integer); ++index) {
        value = static_cast<Integer>(
            value | static_cast<Integer>(std::to_integer<Integer>(bytes[index]) << (8 * index)));
    }
    return value;
}

} // namespace MailCore
