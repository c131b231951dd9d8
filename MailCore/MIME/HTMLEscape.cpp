#include "MailCore/MIME/HTMLEscape.h"

namespace MailCore::SafeHTML {

std::string escape(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    std::size_t done = 0; // everything before it is in `result`
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view escaped = escapes[static_cast<unsigned char>(text[at])];
        if (escaped.empty()) continue;
        result.append(text.substr(done, at - done)).append(escaped);
        done = at + 1;
    }
    return result.append(text.substr(done));
}

} // namespace MailCore::SafeHTML
