// What a mailto: link carries.
#include "MailCore/Links/MailtoCapture.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

#include <optional>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void checkField(const std::string& value, bool keepsLines) {
    check(Text::isValid(bytesOf(value)) && value.find('\0') == std::string::npos);
    check(keepsLines || value.find_first_of("\r\n") == std::string::npos);
}

void checkCapture(std::string_view link) {
    std::optional<MailtoCapture> capture;
    try {
        capture.emplace(link);
    } catch (const MailError&) {
        return;
    }
    check(capture->original == link && link.size() <= 131'072);
    for (const std::string* const field : {&capture->to, &capture->cc, &capture->bcc, &capture->subject})
        checkField(*field, false);
    checkField(capture->body, true);
    check(capture->text().ends_with(capture->body));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    checkCapture(charsOf(exact));
    return 0;
}
