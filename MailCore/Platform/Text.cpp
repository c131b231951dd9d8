#include "MailCore/Platform/Text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>

#include <charconv>

namespace MailCore::Text {

namespace {

template <typename Map>
std::string mapped(std::string_view text, Map map) {
    std::string result;
    result.reserve(text.size());
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    map(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

} // namespace

bool isControl(char32_t codePoint) noexcept {
    if (codePoint < 0x80) return codePoint < 0x20 || codePoint == 0x7F;
    const auto category = u_charType(static_cast<UChar32>(codePoint));
    return category == U_CONTROL_CHAR || category == U_FORMAT_CHAR;
}

std::string_view trimmed(std::string_view text) noexcept {
    return trimmedOf(text, isWhitespace);
}

std::string_view trimmedControls(std::string_view text) noexcept {
    return trimmedOf(text, isControl);
}

std::string_view trimmed(std::string_view text, std::string_view set) noexcept {
    const std::size_t start = text.find_first_not_of(set);
    if (start == std::string_view::npos) return text.substr(0, 0);
    return text.substr(start, text.find_last_not_of(set) - start + 1);
}

std::string withSingleBlanks(std::string_view text) {
    std::string result;
    bool blank = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (isWhitespace(next(text, at))) {
            blank = true;
            continue;
        }
        if (blank && !result.empty()) result += ' ';
        blank = false;
        result.append(text.substr(start, at - start));
    }
    return result;
}

std::string lowered(std::string_view text) {
    if (isASCII(text)) {
        std::string result(text);
        for (char& byte : result) byte = ASCII::lowered(byte);
        return result;
    }
    return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
        icu::CaseMap::utf8ToLower("", 0, piece, sink, nullptr, status);
    });
}

std::string uppered(std::string_view text) {
    if (isASCII(text)) {
        std::string result(text);
        for (char& byte : result) byte = ASCII::uppered(byte);
        return result;
    }
    return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
        icu::CaseMap::utf8ToUpper("", 0, piece, sink, nullptr, status);
    });
}

std::optional<std::int64_t> integer(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace MailCore::Text
