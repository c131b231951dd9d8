// An image: a header is that of a known kind, says the same twice, and is looked at wherever it is cut.
#include "MailCore/Platform/ImageHeader.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto header = imageHeader(input);
    check(imageHeader(input) == header);
    const std::string_view bytes = charsOf(input);
    if (header) {
        check(header->frames <= 2); // none, where an animation says so
        check(bytes.starts_with("\x89PNG") || bytes.starts_with("\xFF\xD8\xFF") || bytes.starts_with("GIF8"));
    }
    for (std::size_t length = size; length > 0; length /= 2)
        imageHeader(copyOf(ByteView(input).first(length - 1)));
    return 0;
}
