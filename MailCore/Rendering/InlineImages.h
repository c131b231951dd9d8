#pragma once

#include "MailCore/Model/MailMessage.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MailCore {

/// The images that a message carries and its HTML shows. Borrows the message.
class InlineImages {
public:
    struct Image {
        ByteView bytes;        // of the attachment
        std::string_view type; // "image/png", "image/jpeg" or "image/gif"
    };

    explicit InlineImages(const MailMessage& message) noexcept : message_(message) {}

    /// The image that `address`, "cid:" and a content ID (RFC 2392), stands for: the first attachment with
    /// that ID, if it is a safe raster image. Nothing once the images taken would add up to more than
    /// 4,194,304 bytes; an image counts each time.
    std::optional<Image> take(std::string_view address);

private:
    const MailAttachment* attachment(std::string_view contentID);
    std::string_view safeType(const MailAttachment& attachment);

    const MailMessage& message_;
    std::size_t taken_ = 0;                                         // bytes
    std::unordered_map<std::string_view, std::size_t> attachments_; // content ID → place
    std::vector<std::optional<std::string_view>>
        safeTypes_; // of attachments looked at: a media type, or empty
};

} // namespace MailCore
