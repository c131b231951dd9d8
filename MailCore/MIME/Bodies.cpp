#include "MailCore/MIME/Bodies.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Platform/UTF8.h"

#include <utility>

namespace MailCore::MIME {

namespace {

std::string preformatted(std::string_view plain) {
    return "<div style=\"white-space:pre-wrap\">" + SafeHTML::escape(plain) + "</div>";
}

} // namespace

void appendText(std::string_view text, std::string& target, std::string_view separator) {
    const std::int64_t room = Limits::rendered - static_cast<std::int64_t>(target.size()) -
                              static_cast<std::int64_t>(separator.size());
    if (room < 1) return;
    if (!target.empty()) target += separator;
    const auto limit = static_cast<std::size_t>(room);
    if (text.size() <= limit) {
        target += text;
        return;
    }
    const std::size_t end = Text::codePointStart(text, limit); // of the one that does not fit whole
    target += text.substr(0, end);
    if (end < limit) target += Text::replacement;
}

void appendPlain(std::string_view text, MailMessage& message) {
    appendText(text, message.plain, "\n\n");
}

void appendHTML(std::string_view text, MailMessage& message) {
    appendText(text, message.html, "\n");
}

void replaceBodies(MailMessage& message, MailMessage&& alternative) {
    if (!alternative.html.empty()) message.html = std::move(alternative.html);
    if (!alternative.plain.empty()) message.plain = std::move(alternative.plain);
}

void appendBodies(MailMessage& message, const MailMessage& child) {
    if (!child.html.empty()) {
        if (message.html.empty() && !message.plain.empty()) message.html = preformatted(message.plain);
        appendHTML(child.html, message);
    } else if (!child.plain.empty() && !message.html.empty()) {
        appendHTML(preformatted(child.plain), message);
    }
    appendPlain(child.plain, message);
}

} // namespace MailCore::MIME
