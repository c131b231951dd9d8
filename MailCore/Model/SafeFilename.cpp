#include "MailCore/Model/SafeFilename.h"

#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Platform/UTF8.h"

namespace MailCore {

namespace {

constexpr std::size_t largestName = 220;
constexpr std::size_t largestExtension = 20;
constexpr std::string_view defaultName = "Attachment";

bool isForbidden(char32_t codePoint) {
    return codePoint == '/' || codePoint == '\\' || codePoint == ':' || Text::isControl(codePoint);
}

std::string withoutForbidden(std::string_view name) {
    std::string result;
    result.reserve(name.size());
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t start = at;
        if (isForbidden(Text::next(name, at))) {
            result += '_';
        } else {
            result.append(name.substr(start, at - start));
        }
    }
    return result;
}

/// Whole characters from the start of `text` as long as they fit into `room` bytes; points into `text`.
std::string_view fitting(std::string_view text, std::size_t room) {
    std::size_t taken = 0;
    while (taken < text.size()) {
        const std::size_t length = Text::firstCharacter(text.substr(taken));
        if (length > room - taken) break;
        taken += length;
    }
    return text.substr(0, taken);
}

} // namespace

std::string safeFilename(std::string_view name) {
    const std::string allowed = withoutForbidden(name);
    std::string_view result = Text::trimmed(allowed);
    if (result.empty() || result == "." || result == "..") result = defaultName;
    const std::string_view extension = pathExtension(result);
    const bool keepsExtension = !extension.empty() && extension.size() <= largestExtension;
    const std::size_t suffixLength = keepsExtension ? extension.size() + 1 : 0;
    const std::string_view suffix = result.substr(result.size() - suffixLength);
    const std::string_view stem =
        fitting(result.substr(0, result.size() - suffixLength), largestName - suffixLength);
    return std::string(stem.empty() ? defaultName : stem).append(suffix);
}

} // namespace MailCore
