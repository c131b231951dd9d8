// Bytes read as UTF-16LE: as the system converts them, or refused when they are not well formed.
#include "MailCore/Platform/UTF16.h"

#include "MailCore/Platform/Converter.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const std::string repaired = Text::repairedUTF16LE(input);
    auto converter = Converter::open("utf-16le");
    check(converter && converter->convert(input) == repaired);
    if (const auto text = Text::fromUTF16LE(input)) {
        check(*text == repaired && 2 * Text::lengthInUTF16(*text) == size);
    }
    return 0;
}
