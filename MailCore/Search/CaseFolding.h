#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// The form in which texts are compared: canonically decomposed and case-folded, so that texts which differ
/// only in case or in how their accents are encoded become the same (Unicode, D145; only that marks, of which
/// the iota subscript alone has a case, stay as they are).
namespace MailCore::CaseFolding {

/// Whose letters: in Turkish and Azerbaijani "I" belongs to the dotless and "i" to the dotted letter.
enum class Rules { standard, turkic };

/// The rules of a locale such as "tr_TR".
Rules rulesOf(std::string_view locale) noexcept;
/// Those of the locale the process runs in.
Rules userRules();

/// One code point of folded text, with what the search has to know of its origin.
class Element {
public:
    constexpr Element() = default;
    /// `combiningClass` orders it among the marks of its letter. An element that does not begin a character
    /// is one of the further letters of an expansion, as in "ss" for "ß", or stands inside a Hangul syllable.
    constexpr Element(char32_t value, std::uint8_t combiningClass, bool beginsCharacter) noexcept
        : bits_(static_cast<std::uint32_t>(value) | std::uint32_t{combiningClass} << 21 |
                std::uint32_t{beginsCharacter} << 29) {}

    constexpr char32_t value() const noexcept { return bits_ & 0x1FFFFF; }
    constexpr std::uint8_t combiningClass() const noexcept { return static_cast<std::uint8_t>(bits_ >> 21); }
    constexpr bool beginsCharacter() const noexcept { return (bits_ >> 29) != 0; }

private:
    std::uint32_t bits_ = 0;
};
using Elements = std::vector<Element>;

/// Folds a text letter by letter, each with the marks after it in canonical order. Bytes that are not UTF-8
/// count as U+FFFD.
class Folder {
public:
    /// Borrows `text`.
    Folder(std::string_view text, Rules rules);

    /// Goes to the next letter; false at the end of the text.
    bool next();
    /// What it and its marks fold to; good until the next call.
    std::span<const Element> elements() const noexcept { return elements_; }
    /// Where it ends.
    std::size_t end() const noexcept { return at_; }
    /// Passes ASCII letters that no mark can follow, not folded; often empty.
    std::string_view passASCII() noexcept;

private:
    void look() noexcept;
    void combine(std::span<const Element> letter, char32_t codePoint, std::size_t start);

    std::string_view text_;
    Rules rules_;
    std::size_t at_ = 0;
    Element single_;
    Elements unit_;
    std::span<const Element> elements_;
    // What `at_` begins with, when it is known.
    std::size_t nextEnd_ = 0;
    char32_t nextCodePoint_ = 0;
    std::span<const Element> nextElements_;
};

/// All of `text`.
Elements folded(std::string_view text, Rules rules);

/// Whether the character that ends at `place` goes on behind it: with a mark, a joiner or a skin tone, the
/// rest of a Hangul syllable, the second half of a conjunct or of a joined emoji. Vowel signs that stand
/// beside their letter (Unicode category Mc) are characters of their own.
bool goesOn(std::string_view text, std::size_t place) noexcept;

/// Whether `place` lies inside a Hangul syllable that is written in pieces.
bool splitsSyllable(std::string_view text, std::size_t place) noexcept;
constexpr bool isHangulSyllable(char32_t codePoint) noexcept {
    return codePoint >= 0xAC00 && codePoint <= 0xD7A3;
}
/// The pieces of Hangul syllables (conjoining jamo).
constexpr bool isJamo(char32_t codePoint) noexcept {
    return (codePoint >= 0x1100 && codePoint <= 0x11FF) || (codePoint >= 0xA960 && codePoint <= 0xA97F) ||
           (codePoint >= 0xD7B0 && codePoint <= 0xD7FF);
}

/// A code point whose folding is not itself, or that is a mark.
struct Variant {
    char32_t codePoint;
    Elements elements; // "I" stands for both i's of the Turkic rules
};
/// All of them but ASCII and Hangul syllables; about 3,000.
const std::vector<Variant>& variants();

} // namespace MailCore::CaseFolding
