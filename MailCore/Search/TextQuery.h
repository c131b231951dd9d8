#pragma once

#include "MailCore/Search/CaseFolding.h"
#include "MailCore/Search/PlainPattern.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace MailCore {

/// A text to look for in many others, prepared once. Serves one thread.
///
/// It is found in a text where both fold to the same: case does not matter, by the rules of the locale, nor
/// whether accents are part of their letter or marks after it; accents themselves, width and the order of
/// words do. What is found ends where a letter with its marks ends: "e" is not found in "é", however written.
/// It begins where a character or a mark begins: neither a piece of an expansion ("s" of "ß") nor of a Hangul
/// syllable is found.
class TextQuery {
public:
    /// White space and line breaks at both ends of `query`, which is UTF-8, do not count.
    TextQuery(std::string_view query, CaseFolding::Rules rules);

    /// Nothing is left to look for.
    bool isBlank() const noexcept { return folded_.empty(); }
    /// Whether the query, which is not blank, is found in `text` (UTF-8). Linear in the text; takes memory in
    /// proportion to the query and to the longest run of marks on one letter.
    bool isIn(std::string_view text);
    /// The same, found by folding all of `text`.
    bool isThoroughlyIn(std::string_view text);

private:
    void preparePlain();
    void prepareVariants(std::u32string_view plain);
    void prepareThorough();
    bool variantIsIn(std::string_view text) const;

    CaseFolding::Rules rules_;
    CaseFolding::Elements folded_;

    // What is found has the composed form, ASCII letters in either case, or contains a variant: one of the
    // other code points that may stand for a part of the query.
    bool hasPlain_ = false;
    PlainPattern plain_;
    bool variantsAreFew_ = false;
    bool variantIsASCII_ = false;
    std::vector<PlainPattern> variants_;

    // For the thorough search (Knuth, Morris and Pratt).
    std::vector<std::uint32_t> shorter_; // per length matched: the longest shorter beginning that it ends in
    std::vector<std::uint8_t> begins_;   // of the last elements, in a ring: Element::beginsCharacter
};

} // namespace MailCore
