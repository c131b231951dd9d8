#include "MailCore/Platform/UUID.h"

#include "MailCore/Platform/ASCII.h"

#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/random.h>
#include <system_error>

namespace MailCore {

namespace {

std::string written(const std::array<std::uint8_t, 16>& bytes, std::string_view digits) {
    std::string text;
    text.reserve(36);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
        text += digits[bytes[index] >> 4];
        text += digits[bytes[index] & 15];
    }
    return text;
}

} // namespace

UUID UUID::random() {
    UUID id;
    std::size_t filled = 0;
    while (filled < id.bytes_.size()) {
        const ssize_t count = getrandom(id.bytes_.data() + filled, id.bytes_.size() - filled, 0);
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "getrandom");
        }
    }
    id.bytes_[6] = static_cast<std::uint8_t>((id.bytes_[6] & 0x0F) | 0x40);
    id.bytes_[8] = static_cast<std::uint8_t>((id.bytes_[8] & 0x3F) | 0x80);
    return id;
}

std::string UUID::text() const {
    return written(bytes_, ASCII::hexDigits);
}

std::string UUID::lowerText() const {
    return written(bytes_, "0123456789abcdef");
}

} // namespace MailCore

std::size_t std::hash<MailCore::UUID>::operator()(const MailCore::UUID& id) const noexcept {
    std::size_t value = 0;
    std::memcpy(&value, id.bytes_.data(), sizeof value); // random bits need no mixing
    return value;
}
