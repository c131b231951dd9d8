#include "MailCore/Platform/HTMLEscape.h"

namespace MailCore::SafeHTML {

std::string escape(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    appendEscaped(result, text);
    return result;
}

void appendEscaped(std::string& out, std::string_view text) {
    std::size_t copied = 0;
    for (std::size_t at = nextEscaped(text, 0); at < text.size(); at = nextEscaped(text, copied)) {
        out.append(text, copied, at - copied).append(escapeOf(text[at]));
        copied = at + 1;
    }
    out.append(text, copied);
}

} // namespace MailCore::SafeHTML
