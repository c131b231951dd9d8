#include "MailCore/Sources/IndexEntry.h"

#include "MailCore/Dates/MailDate.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/Platform/Characters.h"

namespace MailCore::MailReader {

namespace {

// In characters.
constexpr std::size_t largestSubject = 1'024;
constexpr std::size_t largestSender = 1'024;
constexpr std::size_t largestDate = 256;
constexpr std::size_t largestRecipients = 2'048;

EntryText decoded(std::string_view value, std::size_t limit) {
    return Text::prefix(MIME::headerText(value), limit);
}

std::string recipients(std::span<const Header> fields) {
    std::string joined(MIME::value("To", fields));
    joined.append(" ").append(MIME::value("Cc", fields));
    joined.append(" ").append(MIME::value("Bcc", fields));
    return joined;
}

} // namespace

MessageEntry indexEntry(std::int64_t id, std::span<const Header> fields, const MessageRange& range,
                        const URL& file, const FileRevision& revision) {
    const std::string_view date = MIME::value("Date", fields);
    return {
        .id = id,
        .subject = decoded(MIME::value("Subject", fields), largestSubject),
        .from = decoded(MIME::value("From", fields), largestSender),
        .date = Text::prefix(date, largestDate),
        .offset = range.offset,
        .length = range.length,
        .file = file,
        .revision = revision,
        .recipients = decoded(recipients(fields), largestRecipients),
        .timestamp = MailDate::timestamp(date),
    };
}

} // namespace MailCore::MailReader
