#include "MailCore/Search/CaseFolding.h"

#include "MailCore/Platform/ASCII.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/uloc.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <limits>
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
        if (character == 'I' || combiningClass != 0) {
            result.emplace_back(static_cast<char32_t>(character), combiningClass, true);
            continue;
        }
        icu::UnicodeString letters(character);
        letters.foldCase();
        for (int32_t letter = 0; letter < letters.length(); letter = letters.moveIndex32(letter, 1))
            result.emplace_back(static_cast<char32_t>(letters.char32At(letter)), combiningClass, letter == 0);
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

/// The elements of any code point in two steps: pages of 256 without any are one page.
class Table {
public:
    Table() : pages_(pageCount, 0), runs_(pageSize) {
        for (const Variant& variant : variants()) {
            std::uint16_t& page = pages_[variant.codePoint / pageSize];
            if (page == 0) {
                page = static_cast<std::uint16_t>(runs_.size() / pageSize);
                runs_.resize(runs_.size() + pageSize);
            }
            runs_[page * pageSize + variant.codePoint % pageSize] = {
                static_cast<std::uint16_t>(elements_.size()),
                static_cast<std::uint16_t>(variant.elements.size())};
            elements_.insert(elements_.end(), variant.elements.begin(), variant.elements.end());
        }
        if (elements_.size() > std::numeric_limits<std::uint16_t>::max())
            throw std::runtime_error("more Unicode data than expected");
    }

    /// Empty for what is its own element and no mark.
    std::span<const Element> elementsOf(char32_t codePoint) const noexcept {
        const Run run = runs_[pages_[codePoint / pageSize] * pageSize + codePoint % pageSize];
        return {elements_.data() + run.start, run.count};
    }

private:
    struct Run {
        std::uint16_t start = 0;
        std::uint16_t count = 0;
    };
    static constexpr std::size_t pageSize = 256;
    static constexpr std::size_t pageCount = 0x110000 / pageSize;
    std::vector<std::uint16_t> pages_; // → page in `runs_`
    std::vector<Run> runs_;
    Elements elements_;
};

const Table& table() {
    static const Table filled;
    return filled;
}

char32_t decoded(std::string_view text, std::size_t& at) noexcept {
    if (isASCII(text[at])) return static_cast<unsigned char>(text[at++]);
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

/// Whether a virama is among the marks at the end of `text`: it binds the letter to the next one.
bool endsInVirama(std::string_view text) noexcept {
    constexpr std::uint8_t virama = 9; // combining class
    while (!text.empty() && !isASCII(text.back())) {
        const char32_t codePoint = codePointBefore(text, text.size());
        const std::uint8_t combiningClass = u_getCombiningClass(static_cast<UChar32>(codePoint));
        if (combiningClass == virama) return true;
        if (combiningClass == 0) return false;
        text.remove_suffix(static_cast<std::size_t>(U8_LENGTH(codePoint)));
    }
    return false;
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

/// Decides what the "I" that `unit` begins with is (Unicode, SpecialCasing: After_I).
void foldTurkicI(Elements& unit) {
    const auto mark = std::ranges::find_if(unit.begin() + 1, unit.end(),
                                           [](Element element) { return element.combiningClass() >= above; });
    const bool isDotted = mark != unit.end() && mark->value() == dotAbove;
    if (isDotted) unit.erase(mark);
    unit.front() = Element(isDotted ? U'i' : dotlessI, 0, true);
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

Folder::Folder(std::string_view text, Rules rules) : text_(text), rules_(rules) {
    table(); // so that it can be looked at without a failure later
}

std::string_view Folder::passASCII() noexcept {
    const std::size_t start = at_;
    at_ += asciiRun(text_.substr(at_));
    if (at_ < text_.size() && at_ > start) --at_; // a mark may follow
    if (at_ > start) nextEnd_ = 0;
    return text_.substr(start, at_ - start);
}

/// Finds out what `at_`, which is not the end, begins with.
void Folder::look() noexcept {
    nextEnd_ = at_;
    nextCodePoint_ = decoded(text_, nextEnd_);
    nextElements_ = nextCodePoint_ < 0x80 ? std::span<const Element>() : table().elementsOf(nextCodePoint_);
}

bool Folder::next() {
    if (at_ == text_.size()) return false;
    if (nextEnd_ <= at_) look();
    const std::size_t start = at_;
    const char32_t codePoint = nextCodePoint_;
    const std::span<const Element> letter = nextElements_;
    at_ = nextEnd_;
    const bool isLast = at_ == text_.size();
    if (!isLast) look();
    const bool hasMarks = !isLast && isMark(nextElements_);
    const bool isSpecial = codePoint == 'I' || (!letter.empty() && letter.front().value() == U'I') ||
                           isJamo(codePoint) || isHangulSyllable(codePoint);
    if (hasMarks || isSpecial) {
        combine(letter, codePoint, start);
        elements_ = unit_;
    } else if (letter.empty()) {
        const char32_t value = codePoint < 0x80
                                   ? static_cast<char32_t>(ASCII::lowered(static_cast<char>(codePoint)))
                                   : codePoint;
        single_ = Element(value, 0, true);
        elements_ = {&single_, 1};
    } else {
        elements_ = letter;
    }
    return true;
}

/// Makes `unit_` from a letter that begins at `start` and the marks at `at_`, which it moves past them.
void Folder::combine(std::span<const Element> letter, char32_t codePoint, std::size_t start) {
    unit_.assign(letter.begin(), letter.end());
    if (isHangulSyllable(codePoint)) {
        appendSyllable(unit_, codePoint, !splitsSyllable(text_, start));
    } else if (letter.empty()) {
        const bool isPiece = isJamo(codePoint) && splitsSyllable(text_, start);
        const bool keepsCase = codePoint >= 0x80 || codePoint == 'I';
        const char32_t value =
            keepsCase ? codePoint : static_cast<char32_t>(ASCII::lowered(static_cast<char>(codePoint)));
        unit_.emplace_back(value, std::uint8_t{0}, !isPiece);
    }
    while (at_ < text_.size() && isMark(nextElements_)) {
        unit_.insert(unit_.end(), nextElements_.begin(), nextElements_.end());
        at_ = nextEnd_;
        if (at_ < text_.size()) look();
    }
    const auto marks =
        std::ranges::find_if(unit_, [](Element element) { return element.combiningClass() != 0; });
    sortMarks({marks, unit_.end()});
    if (unit_.front().value() != U'I') return;
    if (rules_ == Rules::turkic) {
        foldTurkicI(unit_);
    } else {
        unit_.front() = Element(U'i', 0, true);
    }
}

Elements folded(std::string_view text, Rules rules) {
    Elements elements;
    Folder folder(text, rules);
    while (folder.next()) elements.insert(elements.end(), folder.elements().begin(), folder.elements().end());
    return elements;
}

bool splitsSyllable(std::string_view text, std::size_t place) noexcept {
    if (place == 0 || place >= text.size() || isASCII(text[place - 1])) return false;
    const char32_t before = codePointBefore(text, place);
    return isInsideHangul(before, decoded(text, place));
}

bool goesOn(std::string_view text, std::size_t place) noexcept {
    if (place >= text.size() || isASCII(text[place])) return false;
    std::size_t end = place;
    const char32_t after = decoded(text, end);
    const auto afterICU = static_cast<UChar32>(after);
    if (after == zeroWidthJoiner || u_getCombiningClass(afterICU) != 0 ||
        u_hasBinaryProperty(afterICU, UCHAR_GRAPHEME_EXTEND) ||
        u_hasBinaryProperty(afterICU, UCHAR_EMOJI_MODIFIER))
        return true;
    if (place == 0) return false;
    const char32_t before = codePointBefore(text, place);
    if (u_charType(afterICU) == U_OTHER_LETTER && endsInVirama(text.substr(0, place))) return true;
    if (before == zeroWidthJoiner) return u_hasBinaryProperty(afterICU, UCHAR_EXTENDED_PICTOGRAPHIC);
    return isInsideHangul(before, after);
}

const std::vector<Variant>& variants() {
    static const std::vector<Variant> computedOnce = computedVariants();
    return computedOnce;
}

} // namespace MailCore::CaseFolding
