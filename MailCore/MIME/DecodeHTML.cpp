#include "MailCore/MIME/DecodeHTML.h"

#include "MailCore/MIME/HTMLCharset.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>

namespace MailCore::MIME {

namespace {

constexpr std::size_t largestSniffed = 8'192; // bytes at the beginning, for a meta tag

} // namespace

std::string decodeHTML(ByteView bytes, const std::optional<std::string>& charset) {
    const std::string_view marked = charsOf(bytes);
    if (marked.starts_with("\xFF\xFE")) return MailEncoding::decode(bytes.subspan(2), "utf-16le");
    if (marked.starts_with("\xFE\xFF")) return MailEncoding::decode(bytes.subspan(2), "utf-16be");
    if (marked.starts_with("\xEF\xBB\xBF")) return MailEncoding::decode(bytes.subspan(3), "utf-8");
    if (charset && !Text::trimmed(*charset).empty()) return MailEncoding::decode(bytes, *charset);
    const std::string start = Text::repaired(bytes.first(std::min(bytes.size(), largestSniffed)));
    return MailEncoding::decode(bytes, sniffedCharset(start).value_or("utf-8"));
}

} // namespace MailCore::MIME
