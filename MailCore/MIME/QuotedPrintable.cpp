#include "MailCore/MIME/QuotedPrintable.h"

#include "MailCore/Platform/ASCII.h"

#include <algorithm>

namespace MailCore::MIME {

namespace {

/// The next "=", or in a header the next "_" when that comes first; the end of `text` when there is none.
std::size_t nextSpecial(std::string_view text, std::size_t at, bool header) noexcept {
    if (!header) return std::min(text.find('=', at), text.size());
    while (at < text.size() && text[at] != '=' && text[at] != '_') ++at;
    return at;
}

} // namespace

Bytes quotedPrintable(ByteView bytes, bool header) {
    const std::string_view text = charsOf(bytes);
    Bytes result(text.size()); // an escape only ever shrinks
    auto* out = reinterpret_cast<char*>(result.data());
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t found = nextSpecial(text, at, header);
        out = std::copy_n(text.data() + at, found - at, out);
        at = found;
        if (at == text.size()) break;
        if (text[at] == '_') {
            *out++ = ' ';
            ++at;
            continue;
        }
        const std::string_view escape = text.substr(at + 1, 2);
        if (escape.starts_with('\n')) { // soft line break
            at += 2;
        } else if (escape == "\r\n") {
            at += 3;
        } else if (escape.size() == 2 && ASCII::hexDigit(escape[0]) >= 0 && ASCII::hexDigit(escape[1]) >= 0) {
            *out++ = static_cast<char>(ASCII::hexDigit(escape[0]) << 4 | ASCII::hexDigit(escape[1]));
            at += 3;
        } else {
            *out++ = '=';
            ++at;
        }
    }
    result.resize(static_cast<std::size_t>(out - reinterpret_cast<char*>(result.data())));
    return result;
}

} // namespace MailCore::MIME
