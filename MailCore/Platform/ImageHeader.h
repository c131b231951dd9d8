#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <optional>

namespace MailCore {

/// What a raster image says of itself before any pixel is decoded.
struct ImageHeader {
    std::uint32_t width = 0;  // pixels, as claimed
    std::uint32_t height = 0; // pixels, as claimed
    std::uint32_t frames = 0; // images in the file; counting stops at 2
    bool operator==(const ImageHeader&) const = default;
};

/// The header of a PNG (with the frame count of an animated one), JPEG or GIF. Nothing when `data` is none of
/// them or its header is broken or cut off; a file cut off behind its header is accepted. Memory is bounded
/// by the decoders' own tables whatever size is claimed, and the time is linear in `data`.
std::optional<ImageHeader> imageHeader(ByteView data) noexcept;

} // namespace MailCore
