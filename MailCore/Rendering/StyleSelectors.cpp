#include "MailCore/Rendering/StyleSelectors.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/PageParts.h"

namespace MailCore::StyleSelectors {

namespace {

constexpr std::size_t largestSelector = 300;
constexpr std::string_view scope = PageParts::contentSelector;

} // namespace

std::optional<std::string> scoped(std::string_view text) {
    text = Text::trimmed(text);
    if (text.empty() || text.size() > largestSelector) return std::nullopt;
    std::string prefixed;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (!ASCII::isAlphanumeric(byte) &&
            std::string_view("_.#* >+~,-").find(byte) == std::string_view::npos)
            return std::nullopt;
        prefixed += byte;
        if ((byte == '.' || byte == '#') && Markup::identifierLength(text.substr(at + 1)) > 0)
            prefixed += "m-";
    }
    std::string_view rest = prefixed;
    if (rest == "html" || rest == "body" || rest == "html body") return std::string(scope);
    // ^(?:html\s+)?body\b
    if (rest.starts_with("html ")) rest.remove_prefix(rest.find_first_not_of(' ', 4));
    if (rest.starts_with("body")) {
        rest.remove_prefix(4);
        if (rest.empty() || !(ASCII::isAlphanumeric(rest[0]) || rest[0] == '_'))
            return std::string(scope).append(rest);
    }
    return std::string(scope).append(1, ' ').append(prefixed);
}

} // namespace MailCore::StyleSelectors
