// An image: its header is read whatever follows it, and a byte less never makes more of it.
#include "MailCore/Platform/ImageHeader.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto header = imageHeader(input);
    if (header) check(header->frames == 1 || header->frames == 2);
    if (size == 0) return 0;
    const Bytes shorter = copyOf(ByteView(input).first(size - 1));
    if (const auto cut = imageHeader(shorter)) check(header && cut->frames <= header->frames);
    return 0;
}
