#include "MailCore/MIME/Parameters.h"

#include "MailCore/MIME/HeaderScanner.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/Text.h"

#include <algorithm>
#include <array>

namespace MailCore::MIME {

namespace {

constexpr int mostParameters = 256;
constexpr int mostSegments = 64;
constexpr auto nameKeys = std::to_array<std::string_view>({"filename", "name"});

/// `value` with every quoted pair replaced by its second character.
std::string withoutBackslashes(std::string_view value) {
    std::string result;
    result.reserve(value.size());
    for (std::size_t at = 0; at < value.size(); ++at) {
        if (value[at] == '\\' && at + 1 < value.size()) ++at;
        result += value[at];
    }
    return result;
}

/// The byte that two characters after a "%" spell: hexadecimal digits, or "+" and one digit.
std::optional<unsigned char> escapedByte(std::string_view digits) noexcept {
    const int low = ASCII::hexDigit(digits[1]);
    const int high = digits[0] == '+' ? 0 : ASCII::hexDigit(digits[0]);
    if (low < 0 || high < 0) return std::nullopt;
    return static_cast<unsigned char>(high << 4 | low);
}

/// The name that numbered segments give (RFC 2231 §3), from number 0 up to the first that is missing.
std::optional<std::string> continuedName(std::string_view base, const Parameters& map) {
    std::string joined;
    bool extended = false;
    int index = 0;
    for (; index < mostSegments; ++index) {
        const std::string key = std::string(base) + '*' + std::to_string(index);
        if (const auto encoded = map.find(key + '*'); encoded != map.end()) {
            joined += encoded->second;
            extended = true;
        } else if (const auto plain = map.find(key); plain != map.end()) {
            joined += percentEncoded(plain->second, UnescapedBytes::none());
        } else {
            break;
        }
    }
    if (index == 0) return std::nullopt;
    return extended ? extendedParameter(joined)
                    : headerText(MailEncoding::decode(percentBytes(joined), "utf-8"));
}

/// The name in one structured value; the forms of RFC 2231 come before the plain ones, whatever their key.
std::optional<std::string> nameIn(std::string_view value) {
    const Parameters map = parameters(value);
    for (const std::string_view base : nameKeys) {
        if (auto name = continuedName(base, map)) return name;
        if (const auto found = map.find(std::string(base) + '*'); found != map.end())
            return extendedParameter(found->second);
    }
    for (const std::string_view base : nameKeys) {
        if (const auto found = map.find(base); found != map.end()) return headerText(found->second);
    }
    return std::nullopt;
}

} // namespace

Parameters parameters(std::string_view value) {
    Parameters map;
    std::size_t at = 0;
    for (int count = 0; count < mostParameters; ++count) {
        const std::optional<ScannedParameter> found = nextParameter(value, at);
        if (!found) break;
        at = found->end;
        std::string key = Text::lowered(found->key);
        if (!map.contains(key)) map.emplace(std::move(key), withoutBackslashes(found->value));
    }
    return map;
}

std::optional<std::string> parameter(std::string_view name, std::string_view value) {
    Parameters map = parameters(value);
    const auto found = map.find(Text::lowered(name));
    if (found == map.end()) return std::nullopt;
    return std::move(found->second);
}

Bytes percentBytes(std::string_view text) {
    Bytes result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        auto byte = static_cast<unsigned char>(text[at]);
        if (byte == '%' && text.size() - at > 2) {
            if (const auto escaped = escapedByte(text.substr(at + 1, 2))) {
                byte = *escaped;
                at += 2;
            }
        }
        result.push_back(std::byte{byte});
    }
    return result;
}

std::string extendedParameter(std::string_view text) {
    const std::size_t charsetEnd = text.find('\'');
    const std::size_t languageEnd =
        charsetEnd == std::string_view::npos ? charsetEnd : text.find('\'', charsetEnd + 1);
    if (languageEnd == std::string_view::npos) return MailEncoding::decode(percentBytes(text), "utf-8");
    return MailEncoding::decode(percentBytes(text.substr(languageEnd + 1)), text.substr(0, charsetEnd));
}

std::string filename(std::span<const Header> headers) {
    for (const std::string_view source : {"Content-Disposition", "Content-Type"}) {
        if (const auto name = nameIn(headerValue(source, headers))) return safeFilename(*name);
    }
    return "";
}

} // namespace MailCore::MIME
