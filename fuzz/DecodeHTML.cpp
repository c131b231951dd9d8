// An HTML body as it stands, and once more behind a declared charset on its first line.
#include "MailCore/MIME/DecodeHTML.h"

#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

#include <algorithm>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void checkPage(std::string_view input, const std::optional<std::string>& charset) {
    const Bytes body = copyOf(bytesOf(input));
    const std::string text = MIME::decodeHTML(body, charset);
    checkText(text);
    // No charset makes more than a few code points of a byte.
    check(text.size() <= 64 * body.size() + 64);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    checkPage(input, std::nullopt);
    const std::size_t labelEnd = std::min(input.find('\n'), size);
    checkPage(input.substr(std::min(labelEnd + 1, size)), Text::repaired(bytesOf(input.substr(0, labelEnd))));
    return 0;
}
