#include "MailCore/Rendering/Markup.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Rendering/HTMLEntities.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace MailCore::Markup {

namespace {

using ASCII::isAlphanumeric;
using ASCII::isDigit;
using ASCII::isHexDigit;
using ASCII::isLetter;

constexpr auto npos = std::string_view::npos;

constexpr bool isNameByte(char byte) noexcept {
    return isAlphanumeric(byte) || byte == ':' || byte == '-';
}

/// Past `[^\s"'=<>`]*` at `at`.
std::size_t unquotedEnd(std::string_view text, std::size_t at) noexcept {
    constexpr std::string_view ends = "\"'=<>`";
    while (at < text.size() && ends.find(text[at]) == npos && spaceAt(text, at) == 0) ++at;
    return at;
}

/// What a character reference stands for: up to two code points of a name, or one of a number.
struct Reference {
    std::size_t end;       // past the ";", 0 when there is no reference
    std::string_view name; // text of a named one, empty for a number
    char32_t codePoint;    // of a numeric one
};

constexpr bool isScalarValue(std::uint32_t value) noexcept {
    return value != 0 && value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

/// The reference at `at`, where an ampersand stands.
Reference reference(std::string_view text, std::size_t at) noexcept {
    constexpr Reference none{0, {}, 0};
    std::size_t end = at + 1;
    if (end == text.size()) return none;
    if (text[end] == '#') {
        ++end;
        const bool hexadecimal = end < text.size() && text[end] == 'x';
        if (hexadecimal) ++end;
        const std::size_t digits = end;
        while (end < text.size() && (hexadecimal ? isHexDigit(text[end]) : isDigit(text[end]))) ++end;
        if (end == digits || end == text.size() || text[end] != ';') return none;
        std::uint32_t value = 0;
        const auto parsed =
            std::from_chars(text.data() + digits, text.data() + end, value, hexadecimal ? 16 : 10);
        if (parsed.ec != std::errc() || !isScalarValue(value)) return none;
        return {end + 1, {}, value};
    }
    if (!isLetter(text[end])) return none;
    while (end < text.size() && isAlphanumeric(text[end])) ++end;
    if (end == text.size() || text[end] != ';') return none;
    const std::string_view value = HTMLEntities::named(text.substr(at + 1, end - at - 1));
    if (value.empty()) return none;
    return {end + 1, value, 0};
}

} // namespace

std::size_t spaceAt(std::string_view text, std::size_t at) noexcept {
    if (at >= text.size()) return 0;
    if (isASCII(text[at])) return ASCII::isSpace(text[at]) ? 1 : 0;
    if (Text::isContinuation(text[at])) return 0;
    std::size_t end = at;
    return Text::isWhitespace(Text::next(text, end)) ? end - at : 0;
}

std::size_t skipSpaces(std::string_view text, std::size_t at) noexcept {
    while (const std::size_t length = spaceAt(text, at)) at += length;
    return at;
}

std::string_view withoutFinalLineEnd(std::string_view text) noexcept {
    // Line ends of ICU's $: CR LF, LF, VT, FF, CR, U+0085, U+2028, U+2029.
    for (const std::string_view lineEnd :
         {"\r\n", "\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (text.ends_with(lineEnd)) return text.substr(0, text.size() - lineEnd.size());
    }
    return text;
}

std::size_t identifierLength(std::string_view text) noexcept {
    if (text.empty() || !(isLetter(text[0]) || text[0] == '_')) return 0;
    std::size_t length = 1;
    while (length < text.size() &&
           (isAlphanumeric(text[length]) || text[length] == '_' || text[length] == '-'))
        ++length;
    return length;
}

std::optional<std::size_t> foldedName(std::string_view text, std::size_t at, std::string_view name) noexcept {
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (at < text.size() && ASCII::lowered(text[at]) == name[index]) {
            ++at;
            continue;
        }
        if (name[index] != 's') return std::nullopt;
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("\u017F")) { // long s
            at += 2;
        } else if (name.substr(index).starts_with("st") &&
                   (rest.starts_with("\uFB05") || rest.starts_with("\uFB06"))) { // ligatures of st
            at += 3;
            ++index;
        } else {
            return std::nullopt;
        }
    }
    return at;
}

std::optional<Range> ClosingTags::after(std::size_t from) noexcept {
    if (isKnown_ && (!found_ || found_->start >= from)) return found_;
    isKnown_ = true;
    found_.reset();
    for (std::size_t at = text_.find("</", from); at != npos; at = text_.find("</", at + 2)) {
        const auto nameEnd = foldedName(text_, at + 2, name_);
        if (!nameEnd) continue;
        const std::size_t end = skipSpaces(text_, *nameEnd);
        if (end < text_.size() && text_[end] == '>') {
            found_ = Range{at, end + 1};
            break;
        }
    }
    searched_ += (found_ ? found_->end : text_.size()) - std::min(from, text_.size());
    return found_;
}

std::optional<RawAttribute> AttributeScanner::next() noexcept {
    while (at_ < text_.size() && !isLetter(text_[at_])) ++at_;
    if (at_ == text_.size()) return std::nullopt;
    const std::size_t start = at_;
    while (at_ < text_.size() && isNameByte(text_[at_])) ++at_;
    RawAttribute found{text_.substr(start, at_ - start), {}};
    std::size_t value = skipSpaces(text_, at_);
    if (value == text_.size() || text_[value] != '=') return found;
    value = skipSpaces(text_, value + 1);
    if (value == text_.size()) return found;
    const char quote = text_[value];
    if (quote == '"' || quote == '\'') {
        const std::size_t end = text_.find(quote, value + 1);
        if (end == npos) return found; // of each kind of quote only the last one: no search is in vain twice
        found.value = text_.substr(value + 1, end - value - 1);
        at_ = end + 1;
        return found;
    }
    const std::size_t end = unquotedEnd(text_, value);
    if (end > value) {
        found.value = text_.substr(value, end - value);
        at_ = end;
    }
    return found;
}

void appendDecoded(std::string& out, std::string_view text) {
    std::size_t copied = 0;
    for (std::size_t at = text.find('&'); at != npos; at = text.find('&', at)) {
        const Reference found = reference(text, at);
        if (found.end == 0) {
            ++at;
            continue;
        }
        out.append(text, copied, at - copied);
        if (found.name.empty()) {
            Text::append(out, found.codePoint);
        } else {
            out += found.name;
        }
        copied = at = found.end;
    }
    out.append(text, copied);
}

void appendDecodedEscaped(std::string& out, std::string_view text) {
    std::size_t copied = 0;
    for (std::size_t at = SafeHTML::nextEscaped(text, 0); at < text.size();
         at = SafeHTML::nextEscaped(text, copied)) {
        out.append(text, copied, at - copied);
        copied = at + 1;
        if (text[at] == '&') {
            if (const Reference found = reference(text, at); found.end != 0) {
                copied = found.end;
                std::string number;
                if (found.name.empty()) Text::append(number, found.codePoint);
                SafeHTML::appendEscaped(out, found.name.empty() ? number : found.name);
                continue;
            }
        }
        out += SafeHTML::escapeOf(text[at]);
    }
    out.append(text, copied);
}

} // namespace MailCore::Markup
