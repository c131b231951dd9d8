#include "MailCore/Model/SourceKinds.h"

#include "MailCore/Platform/Text.h"

#include <algorithm>

namespace MailCore::SourceKinds {

namespace {

struct AttachedType {
    std::string_view mediaType; // lower case
    MessageFormat format;
};

/// How mail declares attached messages, which is not how desktops know files.
constexpr auto attachedTypes = std::to_array<AttachedType>({
    {"message/rfc822", MessageFormat::mime},
    {"message/global", MessageFormat::mime},
    {"application/vnd.ms-outlook", MessageFormat::outlook},
});

/// An attachment is one message without a frame.
std::optional<MessageFormat> formatByName(std::string_view name) {
    const SourceKind* const kind = find(Text::lowered(pathExtension(name)));
    if (!kind || kind->isArchive || kind->format == MessageFormat::emlx) return std::nullopt;
    return kind->format;
}

std::optional<MessageFormat> formatByType(std::string_view type) {
    const auto found = std::ranges::find(attachedTypes, Text::lowered(type), &AttachedType::mediaType);
    return found == attachedTypes.end() ? std::nullopt : std::optional(found->format);
}

} // namespace

const SourceKind* find(std::string_view extension) noexcept {
    const auto found = std::ranges::find(all, extension, &SourceKind::extension);
    return found == all.end() ? nullptr : &*found;
}

const SourceKind* of(const URL& file) {
    return find(Text::lowered(file.pathExtension()));
}

MessageFormat formatIn(const URL& file) {
    const SourceKind* const kind = of(file);
    return kind ? kind->format : MessageFormat::mime;
}

std::optional<MessageFormat> formatOfAttachment(std::string_view type, std::string_view name) {
    const auto byName = formatByName(name);
    if (byName == MessageFormat::outlook) return byName;
    const auto byType = formatByType(type);
    return byType ? byType : byName;
}

bool holdsMany(std::string_view kind) noexcept {
    return kind == mbox || kind == maildir;
}

} // namespace MailCore::SourceKinds
