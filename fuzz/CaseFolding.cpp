// A text folded: the same however its accents are encoded, and with its ASCII passed over in runs.
#include "MailCore/Search/CaseFolding.h"

#include "MailCore/Platform/ASCII.h"
#include "fuzz/Support.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <span>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

std::string decomposed(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto wide = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    std::string result;
    icu::Normalizer2::getNFDInstance(status)->normalize(wide, status).toUTF8String(result);
    return result;
}

std::u32string valuesOf(std::span<const CaseFolding::Element> elements) {
    std::u32string values;
    for (const CaseFolding::Element element : elements) values += element.value();
    return values;
}

/// What the search sees: runs of ASCII as they are, everything else folded.
std::u32string foldedInRuns(std::string_view text, CaseFolding::Rules rules) {
    std::u32string values;
    CaseFolding::Folder folder(text, rules);
    do {
        for (const char byte : folder.passASCII()) {
            const bool isDotless = byte == 'I' && rules == CaseFolding::Rules::turkic;
            values += isDotless ? U'\u0131' : static_cast<char32_t>(ASCII::lowered(byte));
        }
        if (!folder.next()) return values;
        values += valuesOf(folder.elements());
    } while (true);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    for (const auto rules : {CaseFolding::Rules::standard, CaseFolding::Rules::turkic}) {
        const std::u32string folded = valuesOf(CaseFolding::folded(text, rules));
        check(valuesOf(CaseFolding::folded(decomposed(text), rules)) == folded);
        check(foldedInRuns(text, rules) == folded);
    }
    for (std::size_t at = 0; at <= text.size(); ++at) {
        CaseFolding::goesOn(text, at);
        CaseFolding::splitsSyllable(text, at);
    }
    return 0;
}
