#pragma once

namespace MailCore {

/// The value of a hexadecimal digit of either case, -1 for any other character.
constexpr int hexDigit(char character) noexcept {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    return -1;
}

} // namespace MailCore
