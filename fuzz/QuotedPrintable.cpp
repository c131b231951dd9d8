// A body in quoted-printable: no longer than it was, and the same line by line as in one.
#include "MailCore/MIME/QuotedPrintable.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    for (const bool header : {false, true}) {
        const Bytes whole = MIME::quotedPrintable(input, header);
        check(whole.size() <= size);
        Bytes joined;
        for (ByteView rest = input; !rest.empty();) {
            const std::size_t lineFeed = charsOf(rest).find('\n');
            const Bytes line = copyOf(rest.first(std::min(lineFeed, rest.size() - 1) + 1));
            const Bytes decoded = MIME::quotedPrintable(line, header);
            joined.insert(joined.end(), decoded.begin(), decoded.end());
            rest = rest.subspan(line.size());
        }
        check(joined == whole);
    }
    return 0;
}
