#include "MailCore/MIME/HTMLEscape.h"

namespace MailCore::SafeHTML {

std::string escape(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    std::size_t done = 0;
    while (done < text.size()) {
        const std::size_t found = text.find_first_of("&<>\"'", done);
        result.append(text.substr(done, found - done));
        if (found == std::string_view::npos) break;
        switch (text[found]) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += "&#39;"; break;
        }
        done = found + 1;
    }
    return result;
}

} // namespace MailCore::SafeHTML
