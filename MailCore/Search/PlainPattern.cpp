#include "MailCore/Search/PlainPattern.h"

#include <array>
#include <utility>

namespace MailCore {

namespace {

/// How common a byte is in the texts of mail, roughly.
constexpr auto commonness = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte)
        table[byte] = byte >= 0xC0 ? 80 : byte >= 0x80 ? 40 : 20; // leading, continuing, ASCII
    for (const char byte : std::string_view("0123456789")) table[static_cast<unsigned char>(byte)] = 30;
    for (const char byte : std::string_view("<>=\"/&;:.,-\n")) table[static_cast<unsigned char>(byte)] = 50;
    std::uint8_t rank = 110;
    for (const char byte : std::string_view(" etaoinsrhldcumfpgwybvkxjqz")) {
        table[static_cast<unsigned char>(byte)] = rank;
        rank = static_cast<std::uint8_t>(rank - 4);
    }
    return table;
}();

} // namespace

PlainPattern::PlainPattern(std::string bytes, std::string ignored)
    : bytes_(std::move(bytes)), ignored_(std::move(ignored)) {
    ignored_.resize(bytes_.size(), '\0');
    const auto common = [this](std::size_t at) { return commonness[static_cast<unsigned char>(bytes_[at])]; };
    std::size_t rarest = 0;
    for (std::size_t at = 1; at < bytes_.size(); ++at) {
        if (common(at) < common(rarest)) rarest = at;
    }
    std::size_t second = rarest == 0 ? bytes_.size() - 1 : 0;
    for (std::size_t at = 0; at < bytes_.size(); ++at) {
        // Another byte tells more than the same one once again.
        if (at != rarest && bytes_[at] != bytes_[rarest] &&
            (bytes_[second] == bytes_[rarest] || common(at) < common(second)))
            second = at;
    }
    const auto byteAt = [this](std::size_t at) {
        return BytePair::Byte{at, static_cast<std::uint8_t>(bytes_[at]),
                              static_cast<std::uint8_t>(ignored_[at])};
    };
    pair_ = BytePair(byteAt(rarest), byteAt(second));
}

} // namespace MailCore
