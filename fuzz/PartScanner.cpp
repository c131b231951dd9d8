// A boundary on the first line, and a multipart body: its parts stand in it one after the other, and a search
// finds the same ones.
#include "MailCore/MIME/PartScanner.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes input = inputBytes(data, size);
    const auto [boundary, rest] = firstLine(input);
    const Bytes exact = copyOf(rest);
    const std::string_view body = charsOf(exact);
    MIME::PartScanner parts(body, charsOf(boundary), MIME::Wanted::everything, never);
    MIME::PartScanner texts(body, charsOf(boundary), MIME::Wanted::texts, never);
    const std::byte* end = exact.data();
    for (;;) {
        const auto part = parts.next();
        const auto text = texts.next();
        check(part.has_value() == text.has_value());
        if (!part) break;
        check(part->data() == text->data() && part->size() == text->size());
        check(isInside(charsOf(*part), body) && part->data() >= end);
        end = part->data() + part->size();
    }
    return 0;
}
