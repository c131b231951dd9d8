// An Outlook message file: valid text within the limits, an attachment list that makes sense, or a refusal.
#include "MailCore/Outlook/Outlook.h"
#include "MailCore/MIME/HeaderText.h"

#include "MailCore/Dates/MailDate.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "fuzz/Support.h"

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

struct Tally {
    std::size_t attachments = 0;
    std::size_t bytes = 0;
};

void checkMessage(const MailMessage& message, int depth, Tally& tally);

void checkAttachment(const MailAttachment& attachment, int depth, Tally& tally) {
    ++tally.attachments;
    tally.bytes += attachment.bytes.size();
    check(!attachment.name.empty() && attachment.name.find('/') == std::string::npos);
    for (const std::string* text : {&attachment.name, &attachment.type, &attachment.contentID})
        checkText(*text);
    check(attachment.available || attachment.bytes.empty());
    if (attachment.embedded.empty()) return;
    check(attachment.embedded.size() == 1 && attachment.type == "message/rfc822");
    check(attachment.available && !attachment.isOLE && attachment.bytes.empty());
    checkMessage(attachment.embedded.front(), depth + 1, tally);
}

void checkMessage(const MailMessage& message, int depth, Tally& tally) {
    check(depth <= 8);
    check(!message.subject.empty() || !message.from.empty() || !message.plain.empty() ||
          !message.html.empty() || !message.attachments.empty());
    for (const std::string* text : {&message.subject, &message.from, &message.to, &message.cc, &message.date,
                                    &message.plain, &message.html})
        checkText(*text);
    // A character that the cut splits becomes one of three bytes.
    for (const std::string* body : {&message.plain, &message.html})
        check(body->size() <= static_cast<std::size_t>(Limits::rendered) + 2);
    check(message.date == MIME::headerValue("Date", message.headers) || MailDate::timestamp(message.date));
    for (const MailAttachment& attachment : message.attachments) checkAttachment(attachment, depth, tally);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes file = inputBytes(data, size);
    try {
        Tally tally;
        checkMessage(Outlook::parse(file), 0, tally);
        check(tally.attachments <= static_cast<std::size_t>(Limits::parts));
        check(tally.bytes <= 3 * static_cast<std::size_t>(Limits::message));
    } catch (const MailError& error) {
        check(error == MailError::malformed || error == MailError::tooMany || error == MailError::tooLarge);
    }
    return 0;
}
