// One header value: its encoded words.
#include "MailCore/MIME/HeaderText.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view value = charsOf(exact);
    const std::string text = MIME::headerText(value);
    checkText(text);
    if (value.find("=?") == std::string_view::npos) check(text == value);
    return 0;
}
