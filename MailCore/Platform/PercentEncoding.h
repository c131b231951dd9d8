#pragma once

#include "MailCore/Platform/ASCII.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Percent escapes (RFC 3986 §2.1).
namespace MailCore {

/// Bytes that need no escape.
class UnescapedBytes {
public:
    /// Letters and digits (ASCII), and those of `others`.
    static constexpr UnescapedBytes alphanumericsAnd(std::string_view others) noexcept {
        UnescapedBytes result;
        for (std::size_t byte = 0; byte < result.bytes_.size(); ++byte) {
            const char character = static_cast<char>(byte);
            result.bytes_[byte] =
                ASCII::isAlphanumeric(character) || others.find(character) != std::string_view::npos;
        }
        return result;
    }
    static constexpr UnescapedBytes none() noexcept { return {}; }

    constexpr bool contain(char byte) const noexcept { return bytes_[static_cast<unsigned char>(byte)]; }

private:
    constexpr UnescapedBytes() = default;
    std::array<bool, 256> bytes_{};
};

/// Whether an escape stands at `at`.
constexpr bool isPercentEscape(std::string_view text, std::size_t at) noexcept {
    return text.size() - at > 2 && text[at] == '%' && ASCII::isHexDigit(text[at + 1]) &&
           ASCII::isHexDigit(text[at + 2]);
}
/// Appends the escape of `byte`, in upper case.
inline void appendPercentEscape(std::string& out, char byte) {
    const auto value = static_cast<unsigned char>(byte);
    out += '%';
    out += ASCII::hexDigits[value >> 4];
    out += ASCII::hexDigits[value & 15];
}

/// `text`, any bytes, with all but the bytes of `unescaped` escaped.
std::string percentEncoded(std::string_view text, const UnescapedBytes& unescaped);
/// `text` with its escapes undone; what is no escape stays. The result may be any bytes.
std::string percentDecodedBytes(std::string_view text);
/// `text` (UTF-8) with its escapes undone; as it is when a percent sign begins none or the result is no valid
/// UTF-8.
std::string percentDecoded(std::string_view text);

} // namespace MailCore
