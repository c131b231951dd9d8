// A date: the direct way never says other than the formatters, and display reads a part of the forms.
#include "MailCore/Dates/DateParser.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    const auto parsed = DateParser::parse(text);
    const auto shown = DateParser::parse(text, DateParser::Wanted::forDisplay);
    if (const auto quick = DateParser::parseUsualForm(text)) {
        check(DateParser::parseWithFormatters(text) == quick && parsed == quick && shown == quick);
    }
    if (parsed && parsed->form->isForDisplay) check(shown == parsed);
    if (shown) check(parsed && shown->form->isForDisplay);
    return 0;
}
