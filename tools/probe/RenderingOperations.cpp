// What is let through of HTML and CSS, and the reading page.
#include "tools/probe/Probe.h"

#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Sources/MailReader.h"

#include <utility>

namespace Probe {
namespace {

Json attributes(const Json& request) {
    Json result = Json::object();
    for (const auto& [name, value] : SafeHTML::attributes(text(request, "text"))) result[name] = value;
    return result;
}

Json rasterType(const Json& request) {
    const Bytes data = bytes(request, "data64");
    const std::optional<std::string_view> type = SafeHTML::rasterType(data);
    return type ? Json(*type) : Json(nullptr);
}

MailMessage messageToRender(const Json& request) {
    if (!isAbsent(request, "path")) return MailReader::message(*entryAt(request), never);
    MailMessage message;
    message.html = text(request, "html");
    message.plain = optionalText(request, "plain").value_or("");
    if (!isAbsent(request, "attachments")) {
        for (const Json& item : list(request, "attachments")) {
            MailAttachment attachment;
            attachment.contentID = text(item, "contentID");
            attachment.bytes = bytes(item, "data64");
            message.attachments.push_back(std::move(attachment));
        }
    }
    return message;
}

Json render(const Json& request) {
    const RenderedMail rendered = SafeHTML::render(messageToRender(request));
    Json links = Json::object();
    for (const auto& [token, address] : rendered.links) links[token] = address;
    return {{"body", rendered.body}, {"links", std::move(links)}, {"stylesheet", rendered.stylesheet}};
}

Json styles(const Json& request) {
    MailStyles styles;
    styles.addStylesheet(text(request, "css"), 0);
    return {{"rules", styles.rules()}, {"colors", json(styles)}, {"stylesheet", styles.stylesheet()}};
}

Json declarations(const Json& request) {
    MailStyles styles;
    const std::string result = styles.declarations(text(request, "text"));
    return styled(styles, result);
}

Json inlineStyle(const Json& request) {
    const Json& given = field(request, "attributes");
    if (!given.is_object()) throw UsageError("attributes is not an object");
    Attributes attributes;
    for (const auto& [name, value] : given.items()) attributes[name] = textOf(value, "attributes");
    MailStyles styles;
    const std::string result = styles.inlineStyle(attributes, text(request, "tag"));
    return styled(styles, result);
}

Json color(const Json& request) {
    MailStyles styles;
    const std::optional<std::string> result =
        styles.color(text(request, "text"), boolean(request, "background"));
    return result ? styled(styles, *result) : Json(nullptr);
}

Json page(const Json& request) {
    std::optional<std::uint32_t> background;
    if (!isAbsent(request, "backgroundRGB"))
        background = static_cast<std::uint32_t>(integer(request, "backgroundRGB"));
    const RenderedMail rendered{
        .body = text(request, "body"), .links = {}, .stylesheet = text(request, "stylesheet")};
    return rendered.page(boolean(request, "dark"), number(request, "scale"), background);
}

} // namespace

Operations renderingOperations() {
    return {
        {"escape", [](const Json& r) -> Json { return SafeHTML::escape(text(r, "text")); }},
        {"entities", [](const Json& r) -> Json { return SafeHTML::entities(text(r, "text")); }},
        {"searchableText", [](const Json& r) -> Json { return SafeHTML::searchableText(text(r, "text")); }},
        {"safeLink", [](const Json& r) -> Json { return json(SafeHTML::safeLink(text(r, "text"))); }},
        {"attributes", attributes},
        {"rasterType", rasterType},
        {"safeRaster", [](const Json& r) -> Json { return SafeHTML::safeRaster(bytes(r, "data64")); }},
        {"render", render},
        {"styles", styles},
        {"declarations", declarations},
        {"inline", inlineStyle},
        {"color", color},
        {"selector", [](const Json& r) -> Json { return json(MailStyles::selector(text(r, "text"))); }},
        {"identifier", [](const Json& r) -> Json { return json(MailStyles::identifier(text(r, "text"))); }},
        {"length",
         [](const Json& r) -> Json {
             return json(MailStyles::length(text(r, "text"), boolean(r, "negative")));
         }},
        {"page", page},
    };
}

} // namespace Probe
