#include "MailCore/Platform/PercentEncoding.h"

#include "MailCore/Platform/UTF8.h"

namespace MailCore {

std::string percentEncoded(std::string_view text, const UnescapedBytes& unescaped) {
    std::string result;
    result.reserve(text.size());
    for (const char byte : text) {
        if (unescaped.contain(byte)) {
            result += byte;
        } else {
            appendPercentEscape(result, byte);
        }
    }
    return result;
}

std::string percentDecodedBytes(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!isPercentEscape(text, at)) {
            result += text[at];
            continue;
        }
        const int value = ASCII::hexDigit(text[at + 1]) << 4 | ASCII::hexDigit(text[at + 2]);
        result += static_cast<char>(static_cast<unsigned char>(value));
        at += 2;
    }
    return result;
}

std::string percentDecoded(std::string_view text) {
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 3)) {
        if (!isPercentEscape(text, at)) return std::string(text);
    }
    std::string result = percentDecodedBytes(text);
    return Text::isValid(bytesOf(result)) ? result : std::string(text);
}

} // namespace MailCore
