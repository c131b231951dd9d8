#include "MailCore/Sources/IndexEntry.h"

#include "MailCore/Dates/MailDate.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/Platform/Characters.h"

namespace MailCore::MailReader {

namespace {

constexpr std::size_t mostSubjectCharacters = 1'024;
constexpr std::size_t mostSenderCharacters = 1'024;
constexpr std::size_t mostDateCharacters = 256;
constexpr std::size_t mostRecipientsCharacters = 2'048;

EntryText decoded(std::string_view value, std::size_t limit) {
    return Text::prefix(MIME::headerText(value), limit);
}

std::string recipients(std::span<const Header> fields) {
    std::string joined(MIME::headerValue("To", fields));
    joined.append(" ").append(MIME::headerValue("Cc", fields));
    joined.append(" ").append(MIME::headerValue("Bcc", fields));
    return joined;
}

} // namespace

MessageEntry indexEntry(std::int64_t id, std::span<const Header> fields, const MessageRange& range,
                        const URL& file, const FileRevision& revision) {
    const std::string_view date = MIME::headerValue("Date", fields);
    return {
        .id = id,
        .subject = decoded(MIME::headerValue("Subject", fields), mostSubjectCharacters),
        .from = decoded(MIME::headerValue("From", fields), mostSenderCharacters),
        .date = Text::prefix(date, mostDateCharacters),
        .offset = range.offset,
        .length = range.length,
        .file = file,
        .revision = revision,
        .recipients = decoded(recipients(fields), mostRecipientsCharacters),
        .timestamp = MailDate::timestamp(date),
    };
}

} // namespace MailCore::MailReader
