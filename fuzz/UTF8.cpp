// Bytes read as UTF-8: what is repaired is what ICU makes of them, and code points are read and written
// alike.

#include "MailCore/Platform/UTF8.h"
#include "MailCore/Platform/ASCII.h"
#include "fuzz/Support.h"

#include <unicode/unistr.h>

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const std::string text = Text::repaired(input);
    std::string expected;
    icu::UnicodeString::fromUTF8({charsOf(input).data(), static_cast<std::int32_t>(size)})
        .toUTF8String(expected);
    check(text == expected);
    check(Text::isValid(input) == (text == charsOf(input)));
    check(isASCII(charsOf(input)) == (asciiRun(charsOf(input)) == size));
    const Bytes exact = copyOf(bytesOf(text));
    const std::string_view view = charsOf(exact);
    std::string written;
    for (std::size_t at = 0; at < view.size();) {
        const std::size_t start = at;
        Text::append(written, Text::next(view, at));
        check(Text::codePointStart(view, at - 1) == start && Text::codePointEnd(view, start + 1) == at);
    }
    check(written == text);
    return 0;
}
