#pragma once

#include "MailCore/Platform/Bytes.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Images that are all header: enough for what inspects size and frames, and no pixel more.
namespace MailCore::Testing {

inline std::string bigEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift & 0xFF);
    return text;
}

inline std::string littleEndian16(std::uint32_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

inline std::string pngChunk(std::string_view type, std::string_view content) {
    const std::string checked = std::string(type).append(content);
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : checked) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (0xEDB88320U & (0U - (crc & 1)));
    }
    return bigEndian(static_cast<std::uint32_t>(content.size()), 4) + checked + bigEndian(~crc, 4);
}

/// An RGB image; `beforePixels` are further chunks.
inline std::string png(std::uint32_t width, std::uint32_t height, std::string_view beforePixels = {}) {
    const std::string header = bigEndian(width, 4) + bigEndian(height, 4) + std::string("\x08\x02\0\0\0", 5);
    return "\x89PNG\r\n\x1A\n" + pngChunk("IHDR", header) + std::string(beforePixels) + pngChunk("IDAT", "") +
           pngChunk("IEND", "");
}

inline std::string animationControl(std::uint32_t frames) {
    return pngChunk("acTL", bigEndian(frames, 4) + bigEndian(0, 4));
}

inline std::string jpeg(std::uint32_t width, std::uint32_t height) {
    const std::string frame =
        "\x08" + bigEndian(height, 2) + bigEndian(width, 2) + "\x01" + "\x01\x11" + std::string(1, '\0');
    return "\xFF\xD8\xFF\xC0" + bigEndian(static_cast<std::uint32_t>(frame.size() + 2), 2) + frame +
           "\xFF\xDA" + bigEndian(8, 2) + "\x01\x01" + std::string("\0\0\x3F\0", 4) + "\xFF\xD9";
}

inline std::string gif(std::uint32_t width, std::uint32_t height, int frames = 1) {
    const std::string size = littleEndian16(width) + littleEndian16(height);
    std::string text = "GIF89a" + size + std::string(3, '\0');
    for (int frame = 0; frame < frames; ++frame)
        text += "," + std::string(4, '\0') + size + std::string("\0\x02\x01\x44\0", 5);
    return text + ";";
}

} // namespace MailCore::Testing
