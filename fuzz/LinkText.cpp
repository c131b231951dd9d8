// Any text beside any address, in a line each.
#include "MailCore/Rendering/LinkText.h"

#include "MailCore/Platform/URL.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    const std::string_view visible = text.substr(0, text.find('\n'));
    const std::string_view address = text.substr(std::min(text.size(), visible.size() + 1));
    leadsElsewhere(visible, address);
    return 0;
}
