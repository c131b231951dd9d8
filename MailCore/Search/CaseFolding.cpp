#include "MailCore/Search/CaseFolding.h"

#include "MailCore/Platform/Text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>

namespace MailCore::CaseFolding {

namespace {

constexpr char32_t dotAbove = 0x307;
constexpr char32_t dotlessI = 0x131;
constexpr std::uint8_t above = 230; // combining class
constexpr char32_t zeroWidthJoiner = 0x200D;

// Hangul syllables, Unicode §3.12
constexpr char32_t firstSyllable = 0xAC00;
constexpr char32_t leadingBase = 0x1100;
constexpr char32_t vowelBase = 0x1161;
constexpr char32_t trailingBase = 0x11A7;
constexpr char32_t vowels = 21;
constexpr char32_t trailings = 28;

void check(UErrorCode status) {
    if (U_FAILURE(status)) throw std::runtime_error("no Unicode data");
}

/// The elements of one code point. "I" stays, for the rules to decide.
Elements computed(char32_t codePoint) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const decomposition = icu::Normalizer2::getNFDInstance(status);
    check(status);
    const icu::UnicodeString characters =
        decomposition->normalize(icu::UnicodeString(static_cast<UChar32>(codePoint)), status);
    check(status);
    Elements result;
    for (int32_t at = 0; at < characters.length(); at = characters.moveIndex32(at, 1)) {
        const UChar32 character = characters.char32At(at);
        const std::uint8_t combiningClass = u_getCombiningClass(character);
        if (character == 'I') {
            result.emplace_back(U'I', combiningClass, true);
            continue;
        }
        icu::UnicodeString letters(character);
        letters.foldCase();
        for (int32_t letter = 0; letter < letters.length(); letter = letters.moveIndex32(letter, 1)) {
            result.emplace_back(static_cast<char32_t>(letters.char32At(letter)), combiningClass, letter == 0);
        }
    }
    return result;
}

std::vector<Variant> computedVariants() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet set(
        icu::UnicodeString(
            u"[[[:NFD_QC=No:][:Changes_When_Casefolded:][:^ccc=0:]]-[:Hangul_Syllable_Type=LV:]"
            u"-[:Hangul_Syllable_Type=LVT:]-[\\u0000-\\u007F]]"),
        status);
    check(status);
    std::vector<Variant> result;
    for (int32_t range = 0; range < set.getRangeCount(); ++range) {
        for (UChar32 codePoint = set.getRangeStart(range); codePoint <= set.getRangeEnd(range); ++codePoint)
            result.push_back({static_cast<char32_t>(codePoint), computed(static_cast<char32_t>(codePoint))});
    }
    return result;
}

/// The elements of any code point in two steps: pages of 256 that are all the same are one page.
class Table {
public:
    Table() : pages_(pageCount, 0), slots_(pageSize, 0) {
        for (std::size_t index = 0; index < variants().size(); ++index) {
            const char32_t codePoint = variants()[index].codePoint;
            std::uint16_t& page = pages_[codePoint / pageSize];
            if (page == 0) {
                page = static_cast<std::uint16_t>(slots_.size() / pageSize);
                slots_.resize(slots_.size() + pageSize);
            }
            slots_[page * pageSize + codePoint % pageSize] = static_cast<std::uint16_t>(index + 1);
        }
    }

    /// Empty for what is its own element and no mark.
    std::span<const Element> elementsOf(char32_t codePoint) const noexcept {
        const std::uint16_t slot = slots_[pages_[codePoint / pageSize] * pageSize + codePoint % pageSize];
        if (slot == 0) return {};
        return variants()[slot - 1U].elements;
    }

private:
    static constexpr std::size_t pageSize = 256;
    static constexpr std::size_t pageCount = 0x110000 / pageSize;
    std::vector<std::uint16_t> pages_; // → page in `slots_`
    std::vector<std::uint16_t> slots_; // → place in `variants` plus one, 0 for none
};

const Table& table() {
    static const Table filled;
    return filled;
}

char32_t decoded(std::string_view text, std::size_t& at) noexcept {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80) {
        ++at;
        return byte;
    }
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 codePoint = 0;
    U8_NEXT_OR_FFFD(bytes, at, text.size(), codePoint);
    return static_cast<char32_t>(codePoint);
}

/// The code point that ends at `place`, which is not the start of `text`.
char32_t codePointBefore(std::string_view text, std::size_t place) noexcept {
    const std::string_view last = text.substr(0, place).substr(place - std::min<std::size_t>(place, 4));
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(last.data());
    auto at = static_cast<int32_t>(last.size());
    UChar32 codePoint = 0;
    U8_PREV_OR_FFFD(bytes, 0, at, codePoint);
    return static_cast<char32_t>(codePoint);
}

/// Whether a syllable goes on from `before` to `after` (UAX #29, GB6 to GB8).
bool isInsideHangul(char32_t before, char32_t after) noexcept {
    if (!isJamo(after) && !isHangulSyllable(after)) return false;
    const auto typeOf = [](char32_t codePoint) {
        return u_getIntPropertyValue(static_cast<UChar32>(codePoint), UCHAR_HANGUL_SYLLABLE_TYPE);
    };
    const int32_t left = typeOf(before);
    if (left == U_HST_NOT_APPLICABLE) return false;
    const int32_t right = typeOf(after);
    switch (left) {
    case U_HST_LEADING_JAMO: return right != U_HST_NOT_APPLICABLE && right != U_HST_TRAILING_JAMO;
    case U_HST_LV_SYLLABLE:
    case U_HST_VOWEL_JAMO: return right == U_HST_VOWEL_JAMO || right == U_HST_TRAILING_JAMO;
    default: return right == U_HST_TRAILING_JAMO;
    }
}

void appendSyllable(Elements& elements, char32_t syllable, bool beginsCharacter) {
    const char32_t index = syllable - firstSyllable;
    elements.emplace_back(leadingBase + index / (vowels * trailings), std::uint8_t{0}, beginsCharacter);
    elements.emplace_back(vowelBase + index / trailings % vowels, std::uint8_t{0}, false);
    if (index % trailings != 0)
        elements.emplace_back(trailingBase + index % trailings, std::uint8_t{0}, false);
}

/// Puts marks into canonical order (Unicode, D109). By counting when there are many: a message may be a
/// single letter with millions of them.
void sortMarks(std::span<Element> marks) {
    const auto byClass = [](Element left, Element right) {
        return left.combiningClass() < right.combiningClass();
    };
    if (std::ranges::is_sorted(marks, byClass)) return;
    if (marks.size() <= 64) {
        for (std::size_t index = 1; index < marks.size(); ++index) {
            for (std::size_t place = index; place > 0 && byClass(marks[place], marks[place - 1]); --place)
                std::swap(marks[place], marks[place - 1]);
        }
        return;
    }
    std::array<std::size_t, 257> starts{};
    for (const Element mark : marks) ++starts[mark.combiningClass() + 1U];
    for (std::size_t index = 1; index < starts.size(); ++index) starts[index] += starts[index - 1];
    Elements sorted(marks.size());
    for (const Element mark : marks) sorted[starts[mark.combiningClass()]++] = mark;
    std::ranges::copy(sorted, marks.begin());
}

/// Decides what the "I" at `letter` is, whose sorted marks are the elements after it (Unicode,
/// SpecialCasing: After_I).
void foldTurkicI(Elements& elements, std::size_t letter) {
    std::size_t mark = letter + 1;
    while (mark < elements.size() && elements[mark].combiningClass() < above) ++mark;
    const bool isDotted = mark < elements.size() && elements[mark].value() == dotAbove;
    if (isDotted) elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(mark));
    elements[letter] = Element(isDotted ? U'i' : dotlessI, 0, true);
}

bool isMark(std::span<const Element> elements) noexcept {
    return !elements.empty() && elements.front().combiningClass() != 0;
}

} // namespace

Rules rulesOf(std::string_view locale) noexcept {
    const std::string_view language = locale.substr(0, locale.find_first_of("_-.@"));
    return language == "tr" || language == "az" ? Rules::turkic : Rules::standard;
}

Rules userRules() {
    return rulesOf(uloc_getDefault());
}

std::size_t appendUnit(Elements& elements, std::string_view text, std::size_t at, Rules rules) {
    const std::size_t unit = elements.size();
    const std::size_t start = at;
    const char32_t codePoint = decoded(text, at);
    if (codePoint < 0x80) {
        const char byte = Text::lowered(static_cast<char>(codePoint));
        elements.emplace_back(static_cast<char32_t>(codePoint == 'I' ? 'I' : byte), std::uint8_t{0}, true);
    } else if (isHangulSyllable(codePoint)) {
        appendSyllable(elements, codePoint, !splitsSyllable(text, start));
    } else if (const std::span<const Element> own = table().elementsOf(codePoint); !own.empty()) {
        elements.insert(elements.end(), own.begin(), own.end());
    } else {
        const bool begins = !isJamo(codePoint) || !splitsSyllable(text, start);
        elements.emplace_back(codePoint, std::uint8_t{0}, begins);
    }
    while (at < text.size() && static_cast<unsigned char>(text[at]) >= 0x80) {
        std::size_t next = at;
        const std::span<const Element> mark = table().elementsOf(decoded(text, next));
        if (!isMark(mark)) break;
        elements.insert(elements.end(), mark.begin(), mark.end());
        at = next;
    }
    std::size_t marks = unit;
    while (marks < elements.size() && elements[marks].combiningClass() == 0) ++marks;
    if (marks < elements.size()) sortMarks(std::span(elements).subspan(marks));
    if (elements[unit].value() == U'I') {
        if (rules == Rules::turkic) {
            foldTurkicI(elements, unit);
        } else {
            elements[unit] = Element(U'i', 0, true);
        }
    }
    return at;
}

Elements folded(std::string_view text, Rules rules) {
    Elements elements;
    for (std::size_t at = 0; at < text.size();) at = appendUnit(elements, text, at, rules);
    return elements;
}

bool splitsSyllable(std::string_view text, std::size_t place) noexcept {
    if (place == 0 || place >= text.size() || static_cast<unsigned char>(text[place - 1]) < 0x80)
        return false;
    const char32_t before = codePointBefore(text, place);
    return isInsideHangul(before, decoded(text, place));
}

bool goesOn(std::string_view text, std::size_t place) noexcept {
    if (place >= text.size() || static_cast<unsigned char>(text[place]) < 0x80) return false;
    std::size_t end = place;
    const char32_t after = decoded(text, end);
    const auto afterICU = static_cast<UChar32>(after);
    if (after == zeroWidthJoiner || u_getCombiningClass(afterICU) != 0 ||
        u_hasBinaryProperty(afterICU, UCHAR_GRAPHEME_EXTEND))
        return true;
    if (place == 0) return false;
    const char32_t before = codePointBefore(text, place);
    constexpr std::uint8_t virama = 9; // combining class
    if (u_getCombiningClass(static_cast<UChar32>(before)) == virama)
        return u_charType(afterICU) == U_OTHER_LETTER;
    if (before == zeroWidthJoiner) return u_hasBinaryProperty(afterICU, UCHAR_EXTENDED_PICTOGRAPHIC);
    return isInsideHangul(before, after);
}

const std::vector<Variant>& variants() {
    static const std::vector<Variant> computedOnce = computedVariants();
    return computedOnce;
}

} // namespace MailCore::CaseFolding
