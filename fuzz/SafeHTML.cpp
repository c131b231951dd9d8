#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Rendering/ReadableText.h"
#include "fuzz/Support.h"

#include <algorithm>
#include <array>
#include <vector>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

/// Whether every tag of the fragment is one of ours, well formed, and closed by its own end.
void requireBalanced(std::string_view body) {
    constexpr std::array<std::string_view, 4> empty{"br", "hr", "col", "img"};
    std::vector<std::string_view> open;
    for (std::size_t at = body.find('<'); at != std::string_view::npos; at = body.find('<', at + 1)) {
        const std::size_t end = body.find('>', at);
        check(end != std::string_view::npos);
        std::string_view tag = body.substr(at + 1, end - at - 1);
        check(tag.find('<') == std::string_view::npos && tag.find('\'') == std::string_view::npos);
        const std::string_view name = tag.substr(0, tag.find_first_of(" "));
        if (tag.starts_with('/')) {
            check(!open.empty() && open.back() == tag.substr(1));
            open.pop_back();
        } else if (std::ranges::find(empty, name) == empty.end()) {
            open.push_back(name);
        }
        check(open.size() <= 101); // a placeholder is one more
    }
    check(open.empty());
}

/// Attribute values only: text may show any address.
void requireNoAddress(std::string_view body) {
    for (const std::string_view attribute : {" href=\"", " src=\""}) {
        for (std::size_t at = body.find(attribute); at != std::string_view::npos;
             at = body.find(attribute, at + 1)) {
            const std::string_view value = body.substr(at + attribute.size());
            check(value.starts_with("tessel-link://") || value.starts_with("data:image/"));
        }
    }
}

} // namespace

/// The page gets balanced markup of our own making, without scripts and addresses, from whatever a message
/// holds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MailMessage message;
    message.html = Text::repaired(std::as_bytes(std::span(data, size)));
    MailAttachment attachment;
    attachment.contentID += 'a';
    attachment.bytes = copyOf(std::as_bytes(std::span(data, size)));
    const RenderedMail rendered = SafeHTML::render({.html = message.html, .attachments = {attachment}});
    check(rendered.body.size() <= 8'388'608);
    checkText(rendered.body);
    requireBalanced(rendered.body);
    requireNoAddress(rendered.body);
    checkText(SafeHTML::readableText(rendered.body));
    check(rendered.body.find("<script") == std::string::npos);
    check(rendered.stylesheet.find('<') == std::string::npos);
    for (const auto& [token, address] : rendered.links) {
        check(rendered.body.find(token) != std::string::npos);
        check(SafeHTML::safeLink(address) == address); // kept once, kept the same again
    }

    const Bytes exact = copyOf(bytesOf(message.html)); // nothing stands behind it, not even a terminator
    const std::string_view text = charsOf(exact);
    checkText(SafeHTML::searchableText(text));
    SafeHTML::attributes(text);
    SafeHTML::safeLink(text);
    if (SafeHTML::safeRaster(attachment.bytes)) check(SafeHTML::rasterType(attachment.bytes).has_value());
    return 0;
}
