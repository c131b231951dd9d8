#pragma once

#include "MailCore/Rendering/Markup.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The values of style properties: words, numbers, lengths and font families. An operation that appends and
/// answers false may have begun to: its caller takes that back.
namespace MailCore::StyleValues {

using Words = std::span<const std::string_view>;

/// What a border, or a side of one, may look like.
inline constexpr std::array<std::string_view, 6> borderStyles{"solid",  "dashed", "dotted",
                                                              "double", "none",   "hidden"};

inline bool contains(Words words, std::string_view word) noexcept {
    return std::ranges::find(words, word) != words.end();
}

/// Takes the pieces of a text between separators, empty ones left out.
class Pieces {
public:
    Pieces(std::string_view text, char separator) noexcept : rest_(text), separator_(separator) {}
    std::optional<std::string_view> next() noexcept {
        while (rest_.starts_with(separator_)) rest_.remove_prefix(1);
        if (rest_.empty()) return std::nullopt;
        const std::size_t end = std::min(rest_.find(separator_), rest_.size());
        const std::string_view piece = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return piece;
    }

private:
    std::string_view rest_;
    char separator_;
};

/// Up to five words of `text`, which white space separates: enough to tell four from too many.
struct SpacedWords {
    explicit SpacedWords(std::string_view text) noexcept {
        std::size_t at = Markup::skipSpaces(text, 0);
        while (at < text.size() && count < words.size()) {
            const std::size_t start = at;
            while (at < text.size() && Markup::spaceAt(text, at) == 0) ++at;
            words[count++] = text.substr(start, at - start);
            at = Markup::skipSpaces(text, at);
        }
    }
    Words all() const noexcept { return Words(words).first(count); }
    std::array<std::string_view, 5> words;
    std::size_t count = 0;
};

/// `text` without blanks and tabs at both ends; line breaks stay.
std::string_view trimmedOfBlanks(std::string_view text) noexcept;
/// A decimal number that fills the text; too small to tell from zero counts as zero, too large as none.
std::optional<double> number(std::string_view text) noexcept;
/// `^-?(?:[0-9]+(?:\.[0-9]+)?|\.[0-9]+)(?:px|pt|em|rem|%|in|cm|mm)$` up to 4,096 and, when `negative`, from
/// -100, else from 0; or a keyword.
bool isLength(std::string_view text, bool negative) noexcept;
/// The same, from 0 and without the keywords other than "0".
bool isWidth(std::string_view text) noexcept;
/// A name as of a class or an id, at most 100 bytes.
bool isIdentifier(std::string_view text) noexcept;

/// One of `words`, which are in lower case.
bool appendKeyword(std::string& out, Words words, std::string_view value);
bool appendLength(std::string& out, std::string_view value, bool negative);
/// The first eight names of a list, each quoted, and the families of the page behind them.
bool appendFamilies(std::string& out, std::string_view value);
/// A word or a length; lengths in pixels and points follow the text size.
bool appendFontSize(std::string& out, std::string_view value);
bool appendLineHeight(std::string& out, std::string_view value);

/// One to four words that `accepts` accepts.
template <typename Accepts>
bool appendOneToFour(std::string& out, std::string_view value, Accepts accepts) {
    const SpacedWords words(value);
    if (words.count < 1 || words.count > 4) return false;
    std::string_view separator;
    for (const std::string_view word : words.all()) {
        if (!accepts(word)) return false;
        out += separator;
        out += word;
        separator = " ";
    }
    return true;
}

/// Begins another declaration of a list that started at `start`.
inline void appendSeparator(std::string& out, std::size_t start) {
    if (out.size() > start) out += ';';
}

} // namespace MailCore::StyleValues
