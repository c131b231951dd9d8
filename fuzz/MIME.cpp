// A whole message: whatever it is, it parses into valid text within the limits, or is refused.
#include "MailCore/MIME/MIME.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "fuzz/Support.h"

#include <optional>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

void checkBody(std::string_view body) {
    checkText(body);
    // Preformatted text grows by up to five characters for one, and is then no longer cut.
    check(body.size() <= 6 * static_cast<std::size_t>(Limits::rendered) + 64);
}

/// What a search sees is what the reader sees, or fails in the same way.
void checkTexts(ByteView data) {
    std::optional<MIME::SearchedTexts> expected;
    std::optional<MailError> failure;
    try {
        MailMessage parsed = MIME::parse(data, never);
        expected = {std::move(parsed.to), std::move(parsed.cc), std::move(parsed.plain),
                    std::move(parsed.html)};
    } catch (const MailError& error) {
        failure = error;
    }
    try {
        check(MIME::texts(data, never) == expected);
    } catch (const MailError& error) {
        check(failure && error == *failure);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes message = inputBytes(data, size);
    const MIME::Split halves = MIME::split(message);
    checkTexts(message);
    try {
        const MailMessage parsed = MIME::parse(message, never);
        check(parsed.headers == halves.headers);
        for (const std::string_view text : {std::string_view(parsed.subject), std::string_view(parsed.from),
                                            std::string_view(parsed.to), std::string_view(parsed.cc)}) {
            checkText(text);
        }
        checkBody(parsed.plain);
        checkBody(parsed.html);
        check(parsed.attachments.size() <= static_cast<std::size_t>(Limits::parts));
        for (const MailAttachment& attachment : parsed.attachments) {
            checkText(attachment.name);
            check(!attachment.name.empty() && attachment.name.find('/') == std::string::npos);
            check(attachment.bytes.size() <= message.size());
            check(attachment.available || attachment.bytes.empty());
        }
    } catch (const MailError& error) {
        check(error == MailError::malformed || error == MailError::tooMany || error == MailError::tooLarge);
    }
    return 0;
}
