// A charset label on the first line, and bytes: whatever both are, the result is text.
#include "MailCore/MIME/MailEncoding.h"

#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto [line, rest] = firstLine(input);
    const std::string label = Text::repaired(line);
    const Bytes bytes = copyOf(rest);
    const std::string text = MailEncoding::decode(bytes, label);
    checkText(text);
    check(text == MailEncoding::decode(bytes, " " + label + "\t"));
    // No charset makes more than a few code points of a byte.
    check(text.size() <= 64 * bytes.size() + 64);
    return 0;
}
