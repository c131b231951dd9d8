#include "MailCore/Rendering/InlineImages.h"

#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Rendering/SafeHTML.h"

namespace MailCore {

namespace {

constexpr std::size_t largestSum = 4'194'304; // bytes of all images taken

} // namespace

std::optional<InlineImages::Image> InlineImages::take(std::string_view address) {
    constexpr std::string_view scheme = "cid:";
    if (!Text::equalsIgnoringCase(address.substr(0, scheme.size()), scheme)) return std::nullopt;
    const MailAttachment* const found = attachment(percentDecoded(address.substr(scheme.size())));
    if (found == nullptr || found->bytes.size() > largestSum - taken_) return std::nullopt;
    const std::string_view type = safeType(*found);
    if (type.empty()) return std::nullopt;
    taken_ += found->bytes.size();
    return Image{found->bytes, type};
}

/// The first attachment with this content ID; null when there is none.
const MailAttachment* InlineImages::attachment(std::string_view contentID) {
    if (safeTypes_.empty()) { // the first image
        safeTypes_.resize(message_.attachments.size());
        for (std::size_t index = 0; index < message_.attachments.size(); ++index)
            attachments_.try_emplace(message_.attachments[index].contentID, index);
    }
    const auto found = attachments_.find(contentID);
    return found == attachments_.end() ? nullptr : &message_.attachments[found->second];
}

/// The media type of an attachment that is a safe image, else empty; each is inspected once.
std::string_view InlineImages::safeType(const MailAttachment& attachment) {
    auto& known = safeTypes_[static_cast<std::size_t>(&attachment - message_.attachments.data())];
    if (!known) {
        const auto type = SafeHTML::rasterType(attachment.bytes);
        known = type && SafeHTML::safeRaster(attachment.bytes) ? *type : std::string_view();
    }
    return *known;
}

} // namespace MailCore
