#pragma once

#include "MailCore/Search/CaseFolding.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <string>
#include <string_view>
#include <vector>

/// The rule of the search said once more, in the plainest way and straight on ICU: decompose the whole text,
/// fold each character, try every place.
namespace MailCore::Testing {

inline icu::UnicodeString decomposed(const icu::UnicodeString& text) {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFDInstance(status)->normalize(text, status);
}

inline std::string composed(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    return icu::Normalizer2::getNFCInstance(status)
        ->normalize(icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())}), status)
        .toUTF8String(result);
}

inline std::string decomposed(std::string_view text) {
    std::string result;
    return decomposed(icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())}))
        .toUTF8String(result);
}

/// A decomposed character and what it folds to.
struct PlainCharacter {
    UChar32 character;
    icu::UnicodeString folded;
};

inline std::vector<PlainCharacter> plainCharacters(std::string_view text, CaseFolding::Rules rules) {
    const bool isTurkic = rules == CaseFolding::Rules::turkic;
    icu::UnicodeString source =
        decomposed(icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())}));
    for (int32_t at = 0; isTurkic && at < source.length(); ++at) {
        if (source[at] != u'I') continue;
        int32_t mark = at + 1;
        while (u_getCombiningClass(source.char32At(mark)) != 0 &&
               u_getCombiningClass(source.char32At(mark)) != 230)
            mark = source.moveIndex32(mark, 1);
        if (mark < source.length() && source[mark] == u'\u0307') source.remove(mark, 1).setCharAt(at, u'i');
    }
    std::vector<PlainCharacter> result;
    for (int32_t at = 0; at < source.length(); at = source.moveIndex32(at, 1)) {
        icu::UnicodeString folded(source.char32At(at));
        if (u_getCombiningClass(source.char32At(at)) == 0) // marks stay
            folded.foldCase(isTurkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
        result.push_back({source.char32At(at), folded});
    }
    return result;
}

inline bool plainlySplitsSyllable(UChar32 before, UChar32 after) {
    const int32_t left = u_getIntPropertyValue(before, UCHAR_HANGUL_SYLLABLE_TYPE);
    const int32_t right = u_getIntPropertyValue(after, UCHAR_HANGUL_SYLLABLE_TYPE);
    if (left == U_HST_LEADING_JAMO) return right == U_HST_LEADING_JAMO || right == U_HST_VOWEL_JAMO;
    if (left == U_HST_VOWEL_JAMO) return right == U_HST_VOWEL_JAMO || right == U_HST_TRAILING_JAMO;
    return left == U_HST_TRAILING_JAMO && right == U_HST_TRAILING_JAMO;
}

/// Whether the character that ends before `end` goes on there.
inline bool plainlyGoesOn(const std::vector<PlainCharacter>& characters, std::size_t end) {
    const UChar32 before = characters[end - 1].character;
    const UChar32 after = characters[end].character;
    if (u_getCombiningClass(after) != 0 || u_hasBinaryProperty(after, UCHAR_GRAPHEME_EXTEND) ||
        after == 0x200D || u_hasBinaryProperty(after, UCHAR_EMOJI_MODIFIER))
        return true;
    for (std::size_t mark = end; mark > 0 && u_getCombiningClass(characters[mark - 1].character) != 0;
         --mark) {
        if (u_getCombiningClass(characters[mark - 1].character) == 9 && u_charType(after) == U_OTHER_LETTER)
            return true;
    }
    if (before == 0x200D) return u_hasBinaryProperty(after, UCHAR_EXTENDED_PICTOGRAPHIC);
    return plainlySplitsSyllable(before, after);
}

/// Whether `query`, which has no blanks at its ends, is in `text`. Takes time in proportion to both
/// multiplied.
inline bool isPlainlyIn(std::string_view text, std::string_view query, CaseFolding::Rules rules) {
    icu::UnicodeString wanted;
    for (const PlainCharacter& character : plainCharacters(query, rules)) wanted += character.folded;
    const std::vector<PlainCharacter> characters = plainCharacters(text, rules);
    for (std::size_t start = 0; start < characters.size(); ++start) {
        if (start > 0 && plainlySplitsSyllable(characters[start - 1].character, characters[start].character))
            continue;
        icu::UnicodeString found;
        std::size_t end = start;
        while (end < characters.size() && found.length() < wanted.length()) found += characters[end++].folded;
        if (found != wanted) continue;
        if (end == characters.size() || !plainlyGoesOn(characters, end)) return true;
    }
    return false;
}

} // namespace MailCore::Testing
