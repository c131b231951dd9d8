#include "MailCore/Sources/Decoding.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Outlook/Outlook.h"
#include "MailCore/Sources/Emlx.h"

#include <utility>

namespace MailCore::MailReader {

MailMessage decoded(ByteView data, MessageFormat format, const Cancelled& cancelled) {
    MailMessage message = format == MessageFormat::outlook ? Outlook::parse(data)
                                                           : MIME::parse(unframed(data, format), cancelled);
    if (cancelled()) throw MailError(MailError::cancelled);
    return message;
}

MIME::SearchedTexts decodedTexts(ByteView data, MessageFormat format, const Cancelled& cancelled) {
    MIME::SearchedTexts texts;
    if (format == MessageFormat::outlook) {
        MailMessage message = Outlook::parse(data);
        texts = {.to = std::move(message.to),
                 .cc = std::move(message.cc),
                 .plain = std::move(message.plain),
                 .html = std::move(message.html)};
    } else {
        texts = MIME::texts(unframed(data, format), cancelled);
    }
    if (cancelled()) throw MailError(MailError::cancelled);
    return texts;
}

ByteView unframed(ByteView data, MessageFormat format) {
    return format == MessageFormat::emlx ? emlx(data) : data;
}

} // namespace MailCore::MailReader
