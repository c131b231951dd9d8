#include "MailCore/Model/MailMessage.h"

#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/Text.h"

namespace MailCore {

bool MailAttachment::canPreview() const {
    if (isOLE) return false;
    return !embedded.empty() || SourceKinds::formatOfAttachment(type, name).has_value();
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
