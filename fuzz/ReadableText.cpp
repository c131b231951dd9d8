// A message for reading without its markup: text, and all of a plain one.
#include "MailCore/Rendering/ReadableText.h"

#include "MailCore/Rendering/SafeHTML.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(charsOf(inputText(data, size)));
    const RenderedMail rendered = SafeHTML::render({.html = input});
    const std::string text = SafeHTML::readableText(rendered.body);
    checkText(text);
    const RenderedMail plain = SafeHTML::render({.plain = input});
    const std::string same = SafeHTML::readableText(plain.body);
    checkText(same);
    check(same.size() <= input.size());
    return 0;
}
