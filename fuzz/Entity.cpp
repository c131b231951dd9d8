// A message or part: its halves are parts of it, and the fields a search keeps are among all of them.
#include "MailCore/MIME/Entity.h"

#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes entity = inputBytes(data, size);
    const MIME::Split halves = MIME::split(entity);
    check(halves.body.empty() || (halves.body.data() > entity.data() &&
                                  halves.body.data() + halves.body.size() == entity.data() + entity.size()));
    for (const Header& header : halves.headers) {
        check(!header.name.empty());
        checkText(header.value);
    }
    const MIME::CutEntity texts = MIME::cut(entity, MIME::Wanted::texts);
    check(texts.fieldCount == halves.headers.size());
    check(texts.halves.body.data() == halves.body.data() && texts.halves.body.size() == halves.body.size());
    for (const Header& header : texts.halves.headers)
        check(std::ranges::find(halves.headers, header) != halves.headers.end());
    return 0;
}
