#include "MailCore/Dates/MailDate.h"
#include "MailCore/Dates/DateParser.h"
#include "MailCore/Platform/UTF8.h"

#include <cstdint>
#include <cstdlib>

using namespace MailCore;

/// The direct way never says other than the formatters, and what is shown is text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = Text::repaired(std::as_bytes(std::span(data, size)));
    if (const auto quick = DateParser::parseUsualForm(text)) {
        if (DateParser::parseWithFormatters(text) != quick) std::abort();
    }
    MailDate::timestamp(text);
    const std::string shown = MailDate::display(text, "en_GB");
    if (!Text::isValid(bytesOf(shown))) std::abort();
    return 0;
}
