#include "MailCore/Links/MailtoCapture.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"

#include <algorithm>
#include <array>
#include <utility>

namespace MailCore {

namespace {

constexpr std::size_t largestLink = 131'072;
constexpr std::string_view scheme = "mailto:";

std::string decoded(std::string_view text) {
    std::string result = percentDecoded(text);
    std::erase(result, '\0');
    return result;
}

/// The two halves of `text` around the first `separator`; the second is empty when there is none.
std::pair<std::string_view, std::string_view> halves(std::string_view text, char separator) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return {text, {}};
    return {text.substr(0, at), text.substr(at + 1)};
}

void addRecipients(std::string& field, std::string_view recipients) {
    if (!field.empty()) field += ", ";
    field += recipients;
}

/// Every run of line breaks becomes one space.
void joinLines(std::string& text) {
    std::string joined;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
        joined.append(text, at, end - at);
        at = std::min(text.find_first_not_of("\r\n", end), text.size());
        if (at > end) joined += ' ';
    }
    text = std::move(joined);
}

} // namespace

MailtoCapture::MailtoCapture(std::string_view link) : original(link) {
    if (link.size() > largestLink || !Text::equalsIgnoringCase(link.substr(0, scheme.size()), scheme) ||
        Text::prefix(link, scheme.size()).size() != scheme.size()) // a mark may sit on the colon
        throw MailError(MailError::malformed);

    const auto [path, query] = halves(link.substr(scheme.size()), '?');
    to = decoded(path);
    for (std::string_view rest = query; !rest.empty();) {
        const auto [item, others] = halves(rest, '&');
        rest = others;
        const auto [name, content] = halves(item, '=');
        const std::string key = Text::lowered(decoded(name));
        std::string value = decoded(content);
        if (key == "to") {
            addRecipients(to, value);
        } else if (key == "cc") {
            addRecipients(cc, value);
        } else if (key == "bcc") {
            addRecipients(bcc, value);
        } else if (key == "subject") {
            subject = std::move(value);
        } else if (key == "body") {
            body = std::move(value);
        }
    }
    for (std::string* const field : {&to, &cc, &bcc, &subject}) joinLines(*field);
}

std::string MailtoCapture::text() const {
    const auto lines = std::to_array<std::pair<std::string_view, const std::string*>>(
        {{"To", &to}, {"Cc", &cc}, {"Bcc", &bcc}, {"Subject", &subject}});
    std::string text;
    for (const auto& [label, value] : lines) {
        if (value->empty()) continue;
        if (!text.empty()) text += '\n';
        text.append(label).append(": ").append(*value);
    }
    if (!body.empty()) text.append("\n\n").append(body);
    return text;
}

} // namespace MailCore
