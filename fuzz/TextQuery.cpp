// A query and a text, a line feed between them: the quick ways through the text find what folding all of it
// finds, and neither depends on how accents are encoded.
#include "MailCore/Search/TextQuery.h"

#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

std::string normalized(const icu::Normalizer2& form, const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    form.normalize(icu::UnicodeString::fromUTF8(text), status).toUTF8String(result);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto [line, rest] = firstLine(input);
    const std::string query = Text::repaired(line);
    const std::string text = Text::repaired(rest);
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2& composed = *icu::Normalizer2::getNFCInstance(status);
    const icu::Normalizer2& decomposed = *icu::Normalizer2::getNFDInstance(status);
    for (const auto rules : {CaseFolding::Rules::standard, CaseFolding::Rules::turkic}) {
        TextQuery prepared(query, rules);
        if (prepared.isBlank()) return 0;
        const bool found = prepared.isThoroughlyIn(text);
        for (const std::string& form : {text, normalized(composed, text), normalized(decomposed, text)})
            check(prepared.isIn(form) == found);
        check(TextQuery(normalized(decomposed, query), rules).isIn(text) == found);
    }
    return 0;
}
