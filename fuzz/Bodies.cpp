// A body and a text that is added to it: the result is text, and has both.
#include "MailCore/MIME/Bodies.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    const std::string before(text.substr(0, Text::codePointStart(text, text.size() / 2)));
    std::string body = before;
    MIME::appendText(text, body, "\n");
    checkText(body);
    check(body.starts_with(before) && body.ends_with(text));

    MailMessage message{.plain = before};
    MIME::appendBodies(message, {.html = std::string(text)});
    checkText(message.html);
    check(message.html.ends_with(text));
    return 0;
}
