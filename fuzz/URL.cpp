// A path and an address: paths come back from their addresses, and escapes are undone into text.
#include "MailCore/Platform/URL.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/PercentEncoding.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const std::string_view bytes = charsOf(input);
    const std::string path = std::string("/").append(bytes);
    const URL file = URL::file(path);
    const auto again = URL::parse(file.text());
    check(again && *again == file && isASCII(file.text()));
    if (path.find("/.") == std::string::npos) check(again->path() == file.path()); // parsing follows dots
    if (!path.ends_with('/')) check(file.path() == path);
    checkText(file.lastPathComponent());
    check(isInside(pathExtension(bytes), bytes) || pathExtension(bytes).empty());

    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    checkText(percentDecoded(text));
    if (const auto url = URL::parse(text)) {
        check(!url->scheme().empty());
        const URL child = url->appending("a b");
        check(child.text().empty() || child.text().ends_with("a%20b"));
    }
    return 0;
}
