#include "MailCore/MIME/Base64.h"

#include <array>
#include <cstdint>

namespace MailCore::Base64 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(alphabet.size() == 64);

constexpr std::uint32_t foreign = 0x80'00'00'00; // no alphabet value reaches this bit, wherever it is shifted

using Values = std::array<std::uint32_t, 256>;

/// The value of each character, shifted to its place in a group of four.
constexpr Values shiftedValues(unsigned shift) {
    Values values{};
    values.fill(foreign);
    for (std::uint32_t value = 0; value < alphabet.size(); ++value)
        values[static_cast<unsigned char>(alphabet[value])] = value << shift;
    return values;
}

constexpr Values first = shiftedValues(18);
constexpr Values second = shiftedValues(12);
constexpr Values third = shiftedValues(6);
constexpr Values fourth = shiftedValues(0);

/// The 24 bits of four characters, with `foreign` set when one of them is outside the alphabet.
std::uint32_t group(const unsigned char* text) noexcept {
    return first[text[0]] | second[text[1]] | third[text[2]] | fourth[text[3]];
}

std::byte* store(std::byte* out, std::uint32_t bits) noexcept {
    out[0] = static_cast<std::byte>(bits >> 16);
    out[1] = static_cast<std::byte>(bits >> 8);
    out[2] = static_cast<std::byte>(bits);
    return out + 3;
}

constexpr std::size_t slack = 2; // bytes that storing two groups at once writes too many

/// Stores two groups, in a form that compilers turn into one instruction for eight bytes.
std::byte* store(std::byte* out, std::uint32_t one, std::uint32_t two) noexcept {
    const std::uint64_t bits = (std::uint64_t{one} << 24 | two) << 16;
    for (unsigned index = 0; index < 8; ++index)
        out[index] = static_cast<std::byte>(bits >> (56 - 8 * index));
    return out + 6;
}

/// Decodes whole groups in clean lines ended by CRLF or LF, until something else comes; moves `at` and `out`.
void decodeLines(const unsigned char*& at, const unsigned char* end, std::byte*& out) noexcept {
    for (;;) {
        while (end - at >= 8) {
            const std::uint32_t one = group(at);
            const std::uint32_t two = group(at + 4);
            if (((one | two) & foreign) != 0) break;
            out = store(out, one, two);
            at += 8;
        }
        if (end - at < 6) return; // a group and a line end
        if (const std::uint32_t last = group(at); (last & foreign) == 0) {
            out = store(out, last);
            at += 4;
        }
        if (at[0] == '\r' && at[1] == '\n') {
            at += 2;
        } else if (at[0] == '\n') {
            at += 1;
        } else {
            return;
        }
    }
}

} // namespace

std::optional<Bytes> decode(std::string_view text) {
    Bytes result(text.size() / 4 * 3 + 3 + slack);
    std::byte* out = result.data();
    const auto* at = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = at + text.size();
    std::uint32_t bits = 0;
    unsigned pending = 0; // characters of a group interrupted by foreign ones, in `bits`
    unsigned padding = 0;
    while (at != end) {
        if (pending == 0 && padding == 0) {
            decodeLines(at, end, out);
            if (at == end) break;
        }
        const unsigned char character = *at++;
        const std::uint32_t value = fourth[character];
        if (value != foreign) {
            if (padding > 0) return std::nullopt;
            bits = bits << 6 | value;
            if (++pending == 4) {
                out = store(out, bits);
                pending = 0;
                bits = 0;
            }
        } else if (character == '=') {
            ++padding;
        }
    }
    if (padding > 2 || (pending + padding) % 4 != 0 || (padding > 0 && pending == 0)) return std::nullopt;
    if (pending > 0) {
        const std::byte* const whole = store(out, bits << 6 * padding);
        out += whole - out - static_cast<std::ptrdiff_t>(padding);
    }
    result.resize(static_cast<std::size_t>(out - result.data()));
    return result;
}

std::string encode(ByteView bytes) {
    std::string result;
    result.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        std::uint32_t bits = 0;
        for (std::size_t index = 0; index < 3; ++index)
            bits = bits << 8 | (index < count ? std::to_integer<std::uint32_t>(bytes[at + index]) : 0);
        for (std::size_t index = 0; index < 4; ++index)
            result += index <= count ? alphabet[bits >> (18 - 6 * index) & 63] : '=';
    }
    return result;
}

} // namespace MailCore::Base64
