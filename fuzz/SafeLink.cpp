// An address: one that is kept has an accepted scheme, is ASCII, and is kept the same again.
#include "MailCore/Rendering/SafeHTML.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const auto link = SafeHTML::safeLink(charsOf(exact));
    if (!link) return 0;
    check(isASCII(*link) && link->size() <= 3 * 8'192 + 256);
    check(link->find_first_of("<>\"\\^`{|} ") == std::string::npos);
    const std::string scheme = Text::lowered(link->substr(0, link->find(':')));
    check(scheme == "http" || scheme == "https" || scheme == "mailto" || scheme == "tel" || scheme == "sms");
    if (link->size() <= 8'192) check(SafeHTML::safeLink(*link) == link);
    return 0;
}
