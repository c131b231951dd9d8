// One header value: encoded words, parameters and the file name in it.
#include "MailCore/MIME/HeaderText.h"

#include "MailCore/MIME/HeaderScanner.h"
#include "MailCore/MIME/Parameters.h"
#include "MailCore/Platform/UTF8.h"

#include <cstdlib>

using namespace MailCore;

namespace {

void check(bool holds) {
    if (!holds) std::abort();
}

bool isInside(std::string_view view, std::string_view text) {
    return view.data() >= text.data() && view.data() + view.size() <= text.data() + text.size();
}

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
    const std::string text = Text::repaired(std::as_bytes(std::span(data, size)));
    const Bytes exact =
        copyOf(bytesOf(text)); // a string keeps a terminator, which would hide one byte too many
    const std::string_view value = charsOf(exact);
    checkScanners(value);
    check(Text::isValid(bytesOf(MIME::headerText(value))));
    check(Text::isValid(bytesOf(MIME::extendedParameter(value))));
    check(MIME::percentBytes(value).size() <= value.size());
    const MIME::Parameters parameters = MIME::parameters(value);
    check(parameters.size() <= 256);
    for (const auto& [key, found] : parameters)
        check(!key.empty() && Text::isValid(bytesOf(found)) && MIME::parameter(key, value) == found);
    const Header headers[] = {{"Content-Disposition", text}};
    const std::string name = MIME::filename(headers);
    check(Text::isValid(bytesOf(name)) && name.find_first_of("/\\\n") == std::string::npos &&
          name.size() <= 255);
    return 0;
}
