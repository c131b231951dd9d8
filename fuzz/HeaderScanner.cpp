// One header value: what the scanners find lies inside it, in order.
#include "MailCore/MIME/HeaderScanner.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void checkScanners(std::string_view value) {
    for (std::size_t at = 0;;) {
        const auto word = MIME::nextEncodedWord(value, at);
        if (!word) break;
        check(isInside(word->whole, value) && isInside(word->charset, word->whole) &&
              isInside(word->encoded, word->whole));
        check(word->whole.data() >= value.data() + at);
        at = static_cast<std::size_t>(word->whole.data() + word->whole.size() - value.data());
    }
    for (std::size_t at = 0;;) {
        const auto parameter = MIME::nextParameter(value, at);
        if (!parameter) break;
        check(isInside(parameter->key, value) && isInside(parameter->value, value) &&
              !parameter->key.empty());
        check(parameter->end > at && parameter->end <= value.size());
        at = parameter->end;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    checkScanners(charsOf(exact));
    return 0;
}
