#include "MailCore/Sources/Emlx.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>
#include <array>

namespace MailCore::MailReader {

namespace {

constexpr std::size_t largestCountLine = 30; // line feed included

} // namespace

ByteView emlx(ByteView data) {
    const std::string_view text = charsOf(data);
    const std::size_t lineFeed = text.substr(0, largestCountLine).find('\n');
    if (lineFeed == std::string_view::npos) throw MailError(MailError::malformed);
    const std::string line = Text::repaired(data.first(lineFeed));
    const std::optional<std::int64_t> count = Text::integer(Text::trimmed(line));
    const ByteView rest = data.subspan(lineFeed + 1);
    if (!count || *count < 1 || *count > Limits::message || std::cmp_greater(*count, rest.size()))
        throw MailError(MailError::malformed);
    return rest.first(static_cast<std::size_t>(*count));
}

MessageRange emlxRange(const FileHandle& handle, ByteOffset offset, std::int64_t length) {
    handle.seek(offset);
    std::array<std::byte, largestCountLine> start;
    const auto wanted = static_cast<std::size_t>(
        std::clamp<std::int64_t>(length, 0, static_cast<std::int64_t>(start.size())));
    std::size_t filled = 0;
    while (filled < wanted) {
        const std::size_t got = handle.read(std::span(start).subspan(filled, wanted - filled));
        if (got == 0) break;
        filled += got;
    }
    const std::string_view text = charsOf(ByteView(start).first(filled));
    const std::size_t lineFeed = text.find('\n');
    if (lineFeed == std::string_view::npos) throw MailError(MailError::malformed);
    const std::optional<std::int64_t> count = Text::integer(text.substr(0, lineFeed));
    const auto header = static_cast<std::int64_t>(lineFeed) + 1;
    if (!count || *count < 1 || *count > length - header) throw MailError(MailError::malformed);
    return {offset + static_cast<ByteOffset>(header), *count};
}

} // namespace MailCore::MailReader
