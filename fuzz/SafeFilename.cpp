// Any name: what is made of it can be created in a folder of the user's choice, and nowhere else.
#include "MailCore/Model/SafeFilename.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string name = safeFilename(charsOf(exact));
    checkText(name);
    check(!name.empty() && name.size() <= 220 && name != "." && name != "..");
    for (std::size_t at = 0; at < name.size();) {
        const char32_t codePoint = Text::next(name, at);
        check(codePoint != '/' && codePoint != '\\' && codePoint != ':' && !Text::isControl(codePoint));
    }
    return 0;
}
