// A link: what a mailto: link carries, and the panel of any link.
#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/UTF8.h"
#include "TesselMail/Model/CapturedMailLink.h"

#include <cstdlib>
#include <optional>

using namespace MailCore;

namespace {

void check(bool holds) {
    if (!holds) std::abort();
}

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

void checkPanel(std::string_view link) {
    const auto panel = TesselMail::CapturedMailLink::of(link, false);
    const auto chinese = TesselMail::CapturedMailLink::of(link, true);
    check(panel.has_value() == chinese.has_value());
    if (!panel) return;
    check(panel->copyValue == chinese->copyValue && panel->fields.size() == chinese->fields.size());
    check(panel->height() >= 48 && panel->height() <= 220);
    check(Text::isValid(bytesOf(panel->copyValue)));
    int last = -1;
    for (const auto& field : panel->fields) {
        check(field.id > last && !field.label.empty() && Text::isValid(bytesOf(field.value)));
        last = field.id;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = Text::repaired(std::as_bytes(std::span(data, size)));
    const Bytes exact = copyOf(bytesOf(text)); // without the terminator of a string
    checkCapture(charsOf(exact));
    checkPanel(charsOf(exact));
    return 0;
}
