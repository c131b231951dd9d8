#include "MailCore/MIME/Leaf.h"

#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/Bodies.h"
#include "MailCore/MIME/DecodeHTML.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/MIME/Parameters.h"
#include "MailCore/MIME/QuotedPrintable.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/Text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace MailCore::MIME {

namespace {

struct DefaultName {
    std::string_view mediaType;
    std::string_view name;
};

constexpr auto defaultNames = std::to_array<DefaultName>({
    // media type → name of a part that has none
    {"application/pdf", "Attachment.pdf"},
    {"image/gif", "Image.gif"},
    {"image/jpeg", "Image.jpg"},
    {"image/png", "Image.png"},
    {"message/global", "Attached message.eml"},
    {"message/rfc822", "Attached message.eml"},
    {"text/calendar", "Calendar.ics"},
    {"text/html", "Attachment.html"},
    {"text/plain", "Attachment.txt"},
});
static_assert(std::ranges::is_sorted(defaultNames, {}, &DefaultName::mediaType));

std::string_view defaultName(std::string_view mediaType) {
    const auto found = std::ranges::lower_bound(defaultNames, mediaType, {}, &DefaultName::mediaType);
    return found != defaultNames.end() && found->mediaType == mediaType ? found->name : "Attachment";
}

/// The media type of a Content-Type value: its first piece that is not empty, "text/plain" when there is
/// none.
std::string mediaType(std::string_view contentType) {
    const std::size_t start = contentType.find_first_not_of(';');
    if (start == std::string_view::npos) return "text/plain";
    const std::string_view piece = contentType.substr(start, contentType.find(';', start) - start);
    return Text::lowered(Text::trimmed(piece, " \t"));
}

/// A body without its transfer encoding: the bytes decoded, or where the encoding changes nothing a view.
class Content {
public:
    Content(ByteView body, std::string_view transferEncoding) : bytes_(body) {
        if (transferEncoding == "base64") {
            std::optional<Bytes> decoded = Base64::decode(charsOf(body));
            valid_ = decoded.has_value();
            if (decoded) decoded_ = std::move(*decoded);
        } else if (transferEncoding == "quoted-printable") {
            decoded_ = quotedPrintable(body, false);
        } else {
            isDecoded_ = false;
        }
        if (isDecoded_) bytes_ = decoded_;
    }
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;

    /// False: the encoding was broken, there are no bytes.
    bool isValid() const noexcept { return valid_; }
    ByteView view() const noexcept { return bytes_; }
    Bytes take() && { return isDecoded_ ? std::move(decoded_) : copyOf(bytes_); }

private:
    Bytes decoded_; // empty when the encoding was broken
    bool isDecoded_ = true;
    ByteView bytes_;
    bool valid_ = true;
};

bool isBodyText(const Description& leaf) {
    return leaf.filename.empty() && !leaf.disposition.starts_with("attachment") &&
           (leaf.type == "text/plain" || leaf.type == "text/html" || leaf.type.empty());
}

} // namespace

Description describe(std::span<const Header> headers) {
    const std::string_view contentType = headerValue("Content-Type", headers);
    return {
        .type = mediaType(contentType),
        .contentType = contentType,
        .transferEncoding = Text::lowered(headerValue("Content-Transfer-Encoding", headers)),
        .disposition = Text::lowered(headerValue("Content-Disposition", headers)),
        .filename = filename(headers),
        .contentID = Text::trimmed(headerValue("Content-ID", headers), "<> "),
    };
}

void addLeaf(const Description& leaf, ByteView body, MailMessage& message, Wanted wanted) {
    const bool isText = isBodyText(leaf);
    if (!isText && wanted == Wanted::texts) return; // nor can what an attachment holds make decoding fail
    Content content(body, leaf.transferEncoding);
    if (isText) {
        if (!content.isValid()) throw MailError(MailError::malformed);
        const std::optional<std::string> charset = parameter("charset", leaf.contentType);
        if (leaf.type == "text/html") {
            appendHTML(decodeHTML(content.view(), charset), message);
        } else {
            appendPlain(MailEncoding::decode(content.view(), charset.value_or("utf-8")), message);
        }
        return;
    }
    const bool available = content.isValid();
    message.attachments.push_back({
        .name = leaf.filename.empty() ? std::string(defaultName(leaf.type)) : leaf.filename,
        .type = leaf.type,
        .bytes = std::move(content).take(),
        .contentID = std::string(leaf.contentID),
        .embedded = {},
        .available = available,
    });
}

} // namespace MailCore::MIME
