#include "MailCore/MIME/HeaderScanner.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

namespace MailCore::MIME {

namespace {

/// The first `stop`, an ASCII character, or white space at or after `at`; the end of `text` when there is
/// neither.
std::size_t endOfWord(std::string_view text, std::size_t at, char stop) noexcept {
    while (at < text.size()) {
        if (text[at] == stop) break;
        std::size_t next = at;
        if (Text::isWhitespace(Text::next(text, next))) break;
        at = next;
    }
    return at;
}

std::size_t afterWhitespace(std::string_view text, std::size_t at) noexcept {
    while (at < text.size()) {
        std::size_t next = at;
        if (!Text::isWhitespace(Text::next(text, next))) break;
        at = next;
    }
    return at;
}

bool isKeyCharacter(char byte) noexcept {
    return ASCII::isAlphanumeric(byte) || byte == '_' || byte == '*' || byte == '-';
}

/// The place of the quote that ends the quoted text beginning at `at`; absent when there is none or a
/// backslash stands before a line break, which it cannot quote.
std::optional<std::size_t> closingQuote(std::string_view text, std::size_t at) noexcept {
    for (;;) {
        at = text.find_first_of("\"\\", at);
        if (at == std::string_view::npos) return std::nullopt;
        if (text[at] == '"') return at;
        if (++at == text.size() || Text::isLineBreak(Text::next(text, at))) return std::nullopt;
    }
}

/// The parameter whose key begins after white space at `at`.
std::optional<ScannedParameter> parameterAt(std::string_view text, std::size_t at) noexcept {
    const std::size_t keyStart = afterWhitespace(text, at);
    std::size_t keyEnd = keyStart;
    while (keyEnd < text.size() && isKeyCharacter(text[keyEnd])) ++keyEnd;
    if (keyEnd == keyStart) return std::nullopt;
    const std::size_t equals = afterWhitespace(text, keyEnd);
    if (equals == text.size() || text[equals] != '=') return std::nullopt;
    const std::string_view key = text.substr(keyStart, keyEnd - keyStart);

    const std::size_t start = afterWhitespace(text, equals + 1);
    if (start == text.size()) return std::nullopt;
    if (text[start] == '"') {
        if (const auto quote = closingQuote(text, start + 1))
            return ScannedParameter{key, text.substr(start + 1, *quote - start - 1), *quote + 1};
    }
    const std::size_t end = endOfWord(text, start, ';');
    if (end == start) return std::nullopt;
    return ScannedParameter{key, text.substr(start, end - start), end};
}

} // namespace

std::optional<EncodedWord> nextEncodedWord(std::string_view text, std::size_t from) noexcept {
    for (;; from += 1) {
        from = text.find("=?", from);
        if (from == std::string_view::npos) return std::nullopt;
        const std::size_t charset = from + 2;
        const std::size_t charsetEnd = endOfWord(text, charset, '?');
        if (charsetEnd == charset) continue;
        const std::string_view middle = text.substr(charsetEnd, 3); // as in "?Q?"
        if (middle.size() < 3 || middle[0] != '?' || middle[2] != '?') continue;
        if (std::string_view("bBqQ").find(middle[1]) == std::string_view::npos) continue;
        const std::size_t encoded = charsetEnd + 3;
        const std::size_t encodedEnd = text.find('?', encoded);
        if (encodedEnd == std::string_view::npos) return std::nullopt; // nor can a later word end
        if (encodedEnd + 1 == text.size() || text[encodedEnd + 1] != '=') continue;
        return EncodedWord{text.substr(from, encodedEnd + 2 - from),
                           text.substr(charset, charsetEnd - charset), middle[1],
                           text.substr(encoded, encodedEnd - encoded)};
    }
}

std::optional<ScannedParameter> nextParameter(std::string_view text, std::size_t from) noexcept {
    if (from == 0) {
        if (const auto first = parameterAt(text, 0)) return first;
    }
    for (;; from += 1) {
        from = text.find(';', from);
        if (from == std::string_view::npos) return std::nullopt;
        if (const auto found = parameterAt(text, from + 1)) return found;
    }
}

} // namespace MailCore::MIME
