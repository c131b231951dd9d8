#include "MailCore/MIME/HTMLCharset.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <limits>

namespace MailCore::MIME {

namespace {

constexpr std::size_t mostTagCharacters = 1'024;
constexpr auto nowhere = std::numeric_limits<std::size_t>::max();

constexpr char32_t longS = 0x17F;       // its upper case is S
constexpr char32_t kelvinSign = 0x212A; // its lower case is k

/// Finds what the expression
/// `(?i)<meta\b[^>]{0,1024}\bcharset\s*=\s*["']?\s*([a-zA-Z0-9._-]+)` finds, with Unicode's ideas of case,
/// word and space. The expression prefers the last "charset" within reach of the first tag that has one.
class MetaScanner {
public:
    explicit MetaScanner(std::string_view text) {
        characters_.reserve(text.size());
        for (std::size_t at = 0; at < text.size();) characters_ += Text::next(text, at);
    }

    std::optional<std::string> label() const {
        std::size_t tagEnd = 0;      // where the tag at hand ends
        std::size_t seen = 0;        // "charset=" was looked for before this place
        std::size_t declaration = 0; // the last one found there
        std::size_t label = nowhere; // and its label
        for (std::size_t at = 0; at < characters_.size(); ++at) {
            if (characters_[at] != '<' || !matches(at + 1, U"meta") || !isWordBoundary(at + 5)) continue;
            const std::size_t start = at + 5;
            if (tagEnd < start) tagEnd = std::min(characters_.find(U'>', start), characters_.size());
            const std::size_t reach = std::min(start + mostTagCharacters, tagEnd);
            for (; seen <= reach; ++seen) {
                const std::size_t found = labelOf(seen);
                if (found == nowhere) continue;
                declaration = seen;
                label = found;
            }
            if (label != nowhere && declaration >= start) return textFrom(label);
        }
        return std::nullopt;
    }

private:
    /// Whether `word`, lower-case ASCII, stands at `at` in any case.
    bool matches(std::size_t at, std::u32string_view word) const {
        if (at > characters_.size() || characters_.size() - at < word.size()) return false;
        return std::ranges::equal(word, std::u32string_view(characters_).substr(at, word.size()),
                                  [](char32_t expected, char32_t character) {
                                      if (character >= 'A' && character <= 'Z') character += 32;
                                      if (character == longS) character = 's';
                                      return character == expected;
                                  });
    }

    /// Whether a word begins or ends at `at`; marks and format characters belong to what they follow.
    bool isWordBoundary(std::size_t at) const {
        const bool wordFollows = at < characters_.size() && isWord(characters_[at]);
        if (at < characters_.size() && isExtender(characters_[at])) return false;
        while (at > 0 && isExtender(characters_[at - 1])) --at;
        return wordFollows != (at > 0 && isWord(characters_[at - 1]));
    }

    static bool isExtender(char32_t character) {
        const auto codePoint = static_cast<UChar32>(character);
        return u_hasBinaryProperty(codePoint, UCHAR_GRAPHEME_EXTEND) ||
               u_charType(codePoint) == U_FORMAT_CHAR;
    }

    static bool isWord(char32_t character) {
        const auto codePoint = static_cast<UChar32>(character);
        constexpr std::uint32_t categories = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
        return u_hasBinaryProperty(codePoint, UCHAR_ALPHABETIC) ||
               (U_GET_GC_MASK(codePoint) & categories) != 0 || character == 0x200C || character == 0x200D;
    }

    static bool isLabelCharacter(char32_t character) {
        if (character >= 0x80) return character == longS || character == kelvinSign;
        const char byte = static_cast<char>(character);
        return ASCII::isAlphanumeric(byte) || byte == '.' || byte == '_' || byte == '-';
    }

    std::size_t afterWhitespace(std::size_t at) const {
        while (at < characters_.size() && Text::isWhitespace(characters_[at])) ++at;
        return at;
    }

    /// The start of the label of the "charset=" at `at`; `nowhere` when there is no such thing.
    std::size_t labelOf(std::size_t at) const {
        if (!matches(at, U"charset") || !isWordBoundary(at)) return nowhere;
        at = afterWhitespace(at + 7);
        if (at >= characters_.size() || characters_[at] != '=') return nowhere;
        at = afterWhitespace(at + 1);
        if (at < characters_.size() && (characters_[at] == '"' || characters_[at] == '\''))
            at = afterWhitespace(at + 1);
        return at < characters_.size() && isLabelCharacter(characters_[at]) ? at : nowhere;
    }

    std::string textFrom(std::size_t at) const {
        std::string text;
        while (at < characters_.size() && isLabelCharacter(characters_[at]))
            Text::append(text, characters_[at++]);
        return text;
    }

    std::u32string characters_;
};

} // namespace

std::optional<std::string> sniffedCharset(std::string_view text) {
    return MetaScanner(text).label();
}

} // namespace MailCore::MIME
