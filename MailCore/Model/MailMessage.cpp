#include "MailCore/Model/MailMessage.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"

#include <algorithm>
#include <array>

namespace MailCore {

bool MailAttachment::canPreview() const {
    static constexpr auto messageTypes =
        std::to_array<std::string_view>({"message/rfc822", "message/global", "application/vnd.ms-outlook"});
    static constexpr auto messageExtensions = std::to_array<std::string_view>({"eml", "mime", "msg", "oft"});
    if (isOLE) return false;
    if (!embedded.empty()) return true;
    if (std::ranges::find(messageTypes, Text::lowered(type)) != messageTypes.end()) return true;
    return std::ranges::find(messageExtensions, Text::lowered(pathExtension(name))) !=
           messageExtensions.end();
}

// Written out: the two records contain each other, which Clang 14 does not survive in a defaulted comparison.
bool MailAttachment::operator==(const MailAttachment& other) const {
    return id == other.id && name == other.name && type == other.type && bytes == other.bytes &&
           contentID == other.contentID && embedded == other.embedded && available == other.available &&
           isOLE == other.isOLE;
}

std::string MailMessage::summary() const {
    std::string text;
    bool blank = false;
    for (std::size_t at = 0; at < plain.size();) {
        const std::size_t start = at;
        if (Text::isWhitespace(Text::next(plain, at))) {
            blank = true;
            continue;
        }
        if (blank && !text.empty()) text += ' ';
        blank = false;
        text.append(plain, start, at - start);
    }
    return text;
}

} // namespace MailCore
