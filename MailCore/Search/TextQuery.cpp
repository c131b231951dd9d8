#include "MailCore/Search/TextQuery.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <string>

namespace MailCore {

using CaseFolding::Element;
using CaseFolding::Elements;
using CaseFolding::Rules;
using CaseFolding::Variant;

namespace {

constexpr std::size_t mostVariants = 24;
constexpr std::size_t mostElementsCompared = 256; // of longer queries only their letters are looked at

/// The elements as composed text (NFC).
std::u32string composed(const Elements& elements) {
    icu::UnicodeString text;
    for (const Element element : elements) text.append(static_cast<UChar32>(element.value()));
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const composition = icu::Normalizer2::getNFCInstance(status);
    if (U_SUCCESS(status)) text = composition->normalize(text, status);
    if (U_FAILURE(status)) throw std::runtime_error("no Unicode data");
    std::u32string result;
    for (int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1))
        result += static_cast<char32_t>(text.char32At(at));
    return result;
}

/// Whether a character may become one with what stands before it.
bool isSecondHalf(char32_t codePoint) noexcept {
    return u_getIntPropertyValue(static_cast<UChar32>(codePoint), UCHAR_NFC_QUICK_CHECK) == UNORM_MAYBE;
}

/// Whether an element of a code point may be `wanted`: its "I" is either i of the Turkic rules.
bool mayBe(Element element, Element wanted) noexcept {
    if (element.value() == U'I') return wanted.value() == U'i' || wanted.value() == U'\u0131';
    return element.value() == wanted.value();
}

/// Whether all of `marks` are among the marks at `at` in `query`.
bool marksMayBe(std::span<const Element> marks, const Elements& query, std::size_t at) noexcept {
    std::size_t end = at;
    while (end < query.size() && query[end].combiningClass() != 0) ++end;
    const auto present = std::span(query).subspan(at, end - at);
    return std::ranges::all_of(marks, [present](Element mark) {
        return std::ranges::any_of(present, [mark](Element wanted) { return mayBe(mark, wanted); });
    });
}

/// Whether a code point of these elements may stand for a part of `query`.
bool mayBePart(const Elements& elements, const Elements& query) noexcept {
    const auto marks =
        std::ranges::find_if(elements, [](Element element) { return element.combiningClass() != 0; });
    const std::span letters(elements.begin(), marks);
    for (std::size_t at = 0; at + letters.size() <= query.size(); ++at) {
        if (std::ranges::equal(letters, std::span(query).subspan(at, letters.size()), mayBe) &&
            marksMayBe({marks, elements.end()}, query, at + letters.size()))
            return true;
    }
    return false;
}

/// A cheaper, looser form of it for long queries, whose values are sorted.
bool mayBePart(const Elements& elements, std::u32string_view values) noexcept {
    return std::ranges::all_of(elements, [values](Element element) {
        const auto has = [values](char32_t value) { return std::ranges::binary_search(values, value); };
        return element.value() == U'I' ? has(U'i') || has(U'\u0131') : has(element.value());
    });
}

std::u32string sortedValues(const Elements& elements) {
    std::u32string values;
    for (const Element element : elements) values += element.value();
    std::ranges::sort(values);
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

} // namespace

TextQuery::TextQuery(std::string_view query, Rules rules)
    : rules_(rules), folded_(CaseFolding::folded(Text::trimmed(query), rules)) {
    if (isBlank()) return;
    preparePlain();
    prepareThorough();
}

void TextQuery::preparePlain() {
    const std::u32string plain = composed(folded_);
    std::string bytes;
    std::string ignored;
    for (const char32_t codePoint : plain) {
        Text::append(bytes, codePoint);
        const bool hasCases =
            codePoint >= 'a' && codePoint <= 'z' && !(rules_ == Rules::turkic && codePoint == 'i');
        ignored.resize(bytes.size(), '\0');
        if (hasCases) ignored.back() = 0x20;
    }
    plain_ = PlainPattern(std::move(bytes), std::move(ignored));
    // What a query cannot begin with here: a mark, sorted among others; the second half of a letter or
    // syllable, which may be part of a composed one.
    hasPlain_ = folded_.front().combiningClass() == 0 && !isSecondHalf(folded_.front().value()) &&
                !CaseFolding::isJamo(plain.front());
    prepareVariants(plain);
}

// A match that contains no variant consists of code points that all stay as they are in composed text (NFC
// quick check: yes), and of ASCII letters; in lower case it is therefore composed itself, and there is one
// composed form.
void TextQuery::prepareVariants(std::u32string_view plain) {
    const std::u32string values = sortedValues(folded_);
    std::u32string inPlain(plain);
    std::ranges::sort(inPlain);
    std::u32string found;
    for (const Variant& variant : CaseFolding::variants()) {
        if (!mayBePart(variant.elements, values)) continue;
        if (folded_.size() <= mostElementsCompared && !mayBePart(variant.elements, folded_)) continue;
        const bool isMark = variant.elements.front().combiningClass() != 0;
        if (isMark || !std::ranges::binary_search(inPlain, variant.codePoint)) found += variant.codePoint;
    }
    for (const char32_t value : values) {
        if (isSecondHalf(value) && !CaseFolding::isJamo(value)) found += value;
    }
    const auto isWanted = [&values](char32_t value) { return std::ranges::binary_search(values, value); };
    if (rules_ == Rules::turkic && isWanted(U'i')) found += U"\u0130\u0307";
    if (rules_ == Rules::turkic && isWanted(U'\u0131')) found += U'I';

    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    variantsAreFew_ = found.size() <= mostVariants;
    if (!variantsAreFew_) return;
    for (const char32_t codePoint : found) {
        variants_.emplace_back(Text::textOf(codePoint));
        variantIsASCII_ = variantIsASCII_ || codePoint < 0x80;
    }
    if (std::ranges::any_of(values, [](char32_t value) { return CaseFolding::isJamo(value); })) {
        // The first two bytes of U+1100 to U+11FF, which syllables may be written with.
        for (const char* lead : {"\xE1\x84", "\xE1\x85", "\xE1\x86", "\xE1\x87"})
            variants_.emplace_back(lead);
    }
}

void TextQuery::prepareThorough() {
    shorter_.assign(folded_.size(), 0);
    std::uint32_t length = 0;
    for (std::size_t at = 1; at < folded_.size(); ++at) {
        while (length > 0 && folded_[at].value() != folded_[length].value()) length = shorter_[length - 1];
        if (folded_[at].value() == folded_[length].value()) ++length;
        shorter_[at] = length;
    }
}

bool TextQuery::variantIsIn(std::string_view text) const {
    if (!variantsAreFew_) return true;
    if (variants_.empty() || (!variantIsASCII_ && isASCII(text))) return false;
    return std::ranges::any_of(variants_, [text](const PlainPattern& variant) {
        return variant.find(text, [](std::size_t) { return true; }) != PlainPattern::Answer::no;
    });
}

bool TextQuery::isIn(std::string_view text) {
    if (hasPlain_) {
        const PlainPattern::Answer answer = plain_.find(text, [&](std::size_t place) {
            return !CaseFolding::goesOn(text, place + plain_.size()) &&
                   !CaseFolding::splitsSyllable(text, place);
        });
        if (answer == PlainPattern::Answer::yes) return true;
        if (answer == PlainPattern::Answer::no && !variantIsIn(text)) return false;
    }
    return isThoroughlyIn(text);
}

bool TextQuery::isThoroughlyIn(std::string_view text) {
    const std::size_t size = folded_.size();
    if (size / 2 > text.size()) return false; // no byte folds to two elements
    const std::size_t ring = std::bit_ceil(size) - 1;
    begins_.assign(ring + 1, 0);
    std::size_t count = 0; // elements so far
    std::size_t matched = 0;
    const auto take = [&](char32_t value, bool beginsCharacter) {
        if (matched == size) matched = shorter_[size - 1];
        while (matched > 0 && folded_[matched].value() != value) matched = shorter_[matched - 1];
        if (folded_[matched].value() == value) ++matched;
        begins_[count++ & ring] = beginsCharacter;
        return matched == size;
    };
    const auto began = [&] { return begins_[(count - size) & ring] != 0; };
    CaseFolding::Folder folder(text, rules_);
    do {
        for (const char byte : folder.passASCII()) {
            const bool isDotless = byte == 'I' && rules_ == Rules::turkic;
            const auto lower = static_cast<unsigned char>(ASCII::lowered(byte));
            if (take(isDotless ? U'\u0131' : static_cast<char32_t>(lower), true) && began()) return true;
        }
        if (!folder.next()) break;
        bool found = false;
        for (const Element element : folder.elements())
            found = take(element.value(), element.beginsCharacter());
        if (found && began() && !CaseFolding::goesOn(text, folder.end())) return true;
    } while (true);
    return false;
}

} // namespace MailCore
