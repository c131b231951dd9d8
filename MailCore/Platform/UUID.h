#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <string>

namespace MailCore {

/// A random identifier (RFC 9562 version 4), unguessable: its bits come from getrandom.
class UUID {
public:
    static UUID random();

    /// The standard text form: 36 characters, upper-case hexadecimal with hyphens.
    std::string text() const;
    /// The same in lower case.
    std::string lowerText() const;

    auto operator<=>(const UUID&) const = default;

private:
    friend struct std::hash<UUID>;
    std::array<std::uint8_t, 16> bytes_{};
};

} // namespace MailCore

template <>
struct std::hash<MailCore::UUID> {
    std::size_t operator()(const MailCore::UUID& id) const noexcept;
};
