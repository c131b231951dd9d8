// A Date header: what is shown for it is text, and stays the same from memory.
#include "MailCore/Dates/MailDate.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    MailDate::timestamp(text);
    const std::string shown = MailDate::display(text, "en_GB");
    checkText(shown);
    check(MailDate::formatted(text, "en_GB") == shown);
    if (const auto plain = MailDate::withoutComments(text)) {
        checkText(*plain);
        check(plain->size() <= text.size());
    }
    return 0;
}
