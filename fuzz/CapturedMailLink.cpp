// The panel of any link, in both languages.
#include "TesselMail/Model/CapturedMailLink.h"

#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void checkPanel(std::string_view link) {
    const auto panel = TesselMail::CapturedMailLink::of(link, false);
    const auto chinese = TesselMail::CapturedMailLink::of(link, true);
    check(panel.has_value() == chinese.has_value());
    if (!panel) return;
    check(panel->copyValue == chinese->copyValue && panel->fields.size() == chinese->fields.size());
    check(panel->height() >= 48 && panel->height() <= 220);
    checkText(panel->copyValue);
    int last = -1;
    for (const auto& field : panel->fields) {
        check(field.id > last && !field.label.empty() && Text::isValid(bytesOf(field.value)));
        last = field.id;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    checkPanel(charsOf(exact));
    return 0;
}
