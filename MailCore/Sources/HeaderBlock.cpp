#include "MailCore/Sources/HeaderBlock.h"

#include "MailCore/MIME/Entity.h"
#include "MailCore/Model/Limits.h"

namespace MailCore::MailReader {

HeaderBlock headers(ArchiveLines& lines) {
    constexpr auto largest = static_cast<std::size_t>(Limits::headers);
    Bytes block;
    std::optional<ByteOffset> end;
    while (block.size() < largest) {
        const std::optional<ArchiveLine> line = lines.next(largest - block.size());
        if (!line) break;
        const std::string_view text = charsOf(line->prefix);
        if (!line->truncated && (text == "\n" || text == "\r\n")) {
            end = line->end;
            break;
        }
        const bool continues = text.starts_with(' ') || text.starts_with('\t');
        if (!continues && text.find(':') == std::string_view::npos) {
            lines.pushBack(*line);
            break;
        }
        block.insert(block.end(), line->prefix.begin(), line->prefix.end());
    }
    return {MIME::split(block).headers, end};
}

} // namespace MailCore::MailReader
