// Any From value: what is shown of it is taken from it.
#include "MailCore/Model/SenderName.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string name = senderName(charsOf(exact));
    checkText(name);
    check(name.size() <= size && name.empty() == (size == 0));
    return 0;
}
