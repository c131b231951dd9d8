#include "MailCore/Platform/UTF16.h"

#include "MailCore/Platform/LittleEndian.h"
#include "MailCore/Platform/UTF8.h"

namespace MailCore::Text {

namespace {

/// UTF-16LE as UTF-8. What is no character is refused, or with `repairing` gives one U+FFFD for the first
/// byte of it, after which reading goes on; an incomplete end gives one.
std::optional<std::string> decodedUTF16LE(ByteView bytes, bool repairing) {
    std::string text;
    // Three bytes of UTF-8 for a unit at most; of what is no character, for each byte.
    text.resize(repairing ? bytes.size() * 3 : bytes.size() / 2 * 3);
    char* out = text.data();
    const std::byte* in = bytes.data();
    const std::byte* const end = in + bytes.size();
    const auto unitAt = [](const std::byte* at) { return littleEndian<std::uint16_t>(ByteView(at, 2)); };
    while (in < end) {
        // Four units of ASCII at a time: that is what most texts are made of.
        for (; end - in >= 8; in += 8, out += 4) {
            const auto units = littleEndian<std::uint64_t>(ByteView(in, 8));
            if ((units & 0xFF80'FF80'FF80'FF80) != 0) break;
            for (int index = 0; index < 4; ++index) out[index] = static_cast<char>(units >> (16 * index));
        }
        if (in == end) break;
        const char32_t unit =
            end - in < 2 ? 0xD800 : unitAt(in); // half a unit is as incomplete as half a pair
        if (unit < 0xD800 || unit > 0xDFFF) {
            out = encode(out, unit);
            in += 2;
        } else if (unit < 0xDC00 && end - in >= 4 && unitAt(in + 2) >= 0xDC00 && unitAt(in + 2) <= 0xDFFF) {
            out = encode(out, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(in + 2) - 0xDC00U));
            in += 4;
        } else if (repairing) {
            out = encode(out, 0xFFFD);
            in = unit < 0xDC00 && end - in < 4 ? end : in + 1;
        } else {
            return std::nullopt;
        }
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
    text.shrink_to_fit(); // most texts need a third of the room
    return text;
}

} // namespace

std::optional<std::string> fromUTF16LE(ByteView bytes) {
    return decodedUTF16LE(bytes, false);
}

std::string repairedUTF16LE(ByteView bytes) {
    if (auto text = decodedUTF16LE(bytes, false)) return *std::move(text);
    return *decodedUTF16LE(bytes, true);
}

std::size_t lengthInUTF16(std::string_view text) noexcept {
    std::size_t units = 0;
    for (const char byte : text)
        units += isContinuation(byte) ? 0U : static_cast<unsigned char>(byte) >= 0xF0 ? 2U : 1U;
    return units;
}

} // namespace MailCore::Text
