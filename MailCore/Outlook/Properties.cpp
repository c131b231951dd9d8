#include "MailCore/Outlook/Properties.h"

#include "MailCore/Platform/LittleEndian.h"

namespace MailCore::Outlook {

std::optional<std::uint64_t> Properties::operator[](std::uint32_t tag) const noexcept {
    constexpr std::size_t recordSize = 16; // tag, flags, value
    const ByteView records = ByteView(stream_).subspan(header_);
    for (std::size_t end = records.size() / recordSize; end > 0; --end) {
        const ByteView record = records.subspan((end - 1) * recordSize, recordSize);
        if (littleEndian<std::uint32_t>(record) == tag) return littleEndian<std::uint64_t>(record.subspan(8));
    }
    return std::nullopt;
}

} // namespace MailCore::Outlook
