// A file with a count line: the message inside it, or a refusal; reading the range is the stricter way.
#include "MailCore/Sources/Emlx.h"

#include "MailCore/Model/MailError.h"
#include "fuzz/MemoryFile.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    std::optional<ByteView> inside;
    try {
        inside = MailReader::emlx(input);
        check(isInside(charsOf(*inside), charsOf(input)) && !inside->empty());
    } catch (const MailError& error) {
        check(error == MailError::malformed);
    }
    const FileHandle file = memoryFile(input);
    try {
        const auto range = MailReader::emlxRange(file, 0, static_cast<std::int64_t>(size));
        check(range.length > 0 && range.offset + static_cast<ByteOffset>(range.length) <= size);
        check(inside && inside->data() == input.data() + range.offset &&
              inside->size() == static_cast<std::size_t>(range.length));
    } catch (const MailError& error) {
        check(error == MailError::malformed);
    }
    return 0;
}
