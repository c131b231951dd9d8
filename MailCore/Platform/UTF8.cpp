#include "MailCore/Platform/UTF8.h"

namespace MailCore::Text {

namespace {

struct Sequence {
    std::size_t length; // bytes of the sequence, or of its maximal valid beginning (at least 1)
    bool valid;
};

/// The sequence at the start of `bytes`, which is not empty (Unicode §3.9, table 3-7).
Sequence sequence(const unsigned char* bytes, std::size_t count) noexcept {
    const unsigned char lead = bytes[0];
    if (lead < 0x80) return {1, true};
    if (lead < 0xC2 || lead > 0xF4) return {1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
    for (std::size_t index = 1; index < length; ++index) {
        if (index >= count || bytes[index] < low || bytes[index] > high) return {index, false};
        low = 0x80;
        high = 0xBF;
    }
    return {length, true};
}

/// How many leading bytes of `bytes` are well formed.
std::size_t validRun(const unsigned char* bytes, std::size_t count) noexcept {
    std::size_t at = 0;
    while (at < count) {
        at += asciiRun({reinterpret_cast<const char*>(bytes) + at, count - at});
        if (at == count) break;
        const Sequence found = sequence(bytes + at, count - at);
        if (!found.valid) break;
        at += found.length;
    }
    return at;
}

} // namespace

std::string repaired(ByteView bytes) {
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    std::string text;
    text.reserve(bytes.size());
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t run = validRun(data + at, bytes.size() - at);
        text.append(reinterpret_cast<const char*>(data + at), run);
        at += run;
        if (at == bytes.size()) break;
        text += replacement;
        at += sequence(data + at, bytes.size() - at).length;
    }
    return text;
}

bool isValid(ByteView bytes) noexcept {
    return validRun(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()) == bytes.size();
}

} // namespace MailCore::Text
