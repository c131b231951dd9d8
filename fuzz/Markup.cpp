// Markup: what the scanners find lies in order inside it, and both ways to decode and escape agree.
#include "MailCore/Rendering/Markup.h"

#include "MailCore/Platform/HTMLEscape.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = inputText(data, size);
    const std::string_view text = charsOf(exact);
    std::string decoded;
    Markup::appendDecoded(decoded, text);
    std::string both;
    Markup::appendDecodedEscaped(both, text);
    check(both == SafeHTML::escape(decoded));
    checkText(decoded);

    const char* last = text.data();
    Markup::AttributeScanner scanner(text);
    while (const auto found = scanner.next()) {
        check(isInside(found->name, text) && found->name.data() >= last && !found->name.empty());
        check(found->value.empty() ||
              (isInside(found->value, text) && found->value.data() > found->name.data()));
        last = found->name.data() + found->name.size();
    }
    Markup::ClosingTags closing(text, "style");
    std::size_t at = 0;
    while (const auto found = closing.after(at)) {
        check(found->start >= at && found->end > found->start && found->end <= text.size());
        at = found->end;
    }
    check(closing.exhausted());
    return 0;
}
