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
    return Text::withSingleBlanks(plain);
}

} // namespace MailCore
