// The records of a reply.
#include "tools/probe/Probe.h"

#include "MailCore/MIME/Base64.h"

#include <glib.h>
#include <memory>

namespace Probe {

namespace {

std::string sha256(ByteView value) {
    const std::unique_ptr<gchar, decltype(&g_free)> digest(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(value.data()),
                                    value.size()),
        &g_free);
    return digest.get();
}

} // namespace

Json json(const std::optional<std::string>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json base64(ByteView value) {
    return {{"data64", Base64::encode(value)}};
}

Json json(const std::vector<Header>& headers) {
    Json result = Json::array();
    for (const Header& header : headers) result.push_back({{"name", header.name}, {"value", header.value}});
    return result;
}

Json json(const MailAttachment& attachment, bool withBytes) {
    Json embedded = Json::array();
    for (const MailMessage& message : attachment.embedded) embedded.push_back(json(message, withBytes));
    Json result = {
        {"name", attachment.name},           {"type", attachment.type},
        {"size", attachment.bytes.size()},   {"sha256", sha256(attachment.bytes)},
        {"contentID", attachment.contentID}, {"available", attachment.available},
        {"isOLE", attachment.isOLE},         {"canPreview", attachment.canPreview()},
        {"embedded", std::move(embedded)},
    };
    if (withBytes) result["data64"] = Base64::encode(attachment.bytes);
    return result;
}

Json json(const MailMessage& message, bool withBytes) {
    Json attachments = Json::array();
    for (const MailAttachment& attachment : message.attachments)
        attachments.push_back(json(attachment, withBytes));
    return {
        {"subject", message.subject},
        {"from", message.from},
        {"to", message.to},
        {"cc", message.cc},
        {"date", message.date},
        {"plain", message.plain},
        {"html", message.html},
        {"summary", message.summary()},
        {"headers", json(message.headers)},
        {"attachments", std::move(attachments)},
    };
}

Json json(const std::optional<FileRevision>& revision) {
    if (!revision) return nullptr;
    return {
        {"device", revision->device},
        {"inode", revision->inode},
        {"size", revision->size},
        {"seconds", revision->seconds},
        {"nanoseconds", revision->nanoseconds},
    };
}

Json json(const MessageEntry& entry) {
    return {
        {"id", entry.id},
        {"subject", entry.subject.view()},
        {"from", entry.from.view()},
        {"date", entry.date.view()},
        {"offset", entry.offset},
        {"length", entry.length},
        {"file", entry.file.path()},
        {"recipients", entry.recipients.view()},
        {"timestamp", entry.timestamp ? Json(*entry.timestamp) : Json(nullptr)},
        {"metadataBytes", entry.metadataBytes()},
        {"revision", json(entry.revision)},
    };
}

Json json(const MailStyles& styles) {
    Json colors = Json::array();
    for (const MailStyles::Color& color : styles.colors()) colors.push_back({color.light, color.dark});
    return colors;
}

Json styled(const MailStyles& styles, const std::string& text) {
    return {{"text", text}, {"colors", json(styles)}};
}

} // namespace Probe
