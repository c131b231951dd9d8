#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace MailCore {

/// Finds places where two bytes stand at given distances, 64 places at a time: the quick first step of a
/// search, written so that compilers turn it into vector instructions wherever there are any.
class BytePair {
public:
    /// One of the bytes: what a text's byte equals once the bits of `ignored` are set in it. With 0x20
    /// ignored a lower-case ASCII letter stands for both its cases.
    struct Byte {
        std::size_t distance = 0; // from the place found
        std::uint8_t value = 0;
        std::uint8_t ignored = 0;
    };

    constexpr BytePair() = default;
    constexpr BytePair(Byte first, Byte second) noexcept : first_(first), second_(second) {}

    /// Calls `visit(place)` for every place below `end` where both bytes stand, in order, until it answers
    /// true; whether it did. `end` plus either distance lies inside `text`.
    template <typename Visit>
    bool any(std::string_view text, std::size_t end, Visit visit) const {
        const auto* const first = reinterpret_cast<const std::uint8_t*>(text.data()) + first_.distance;
        const auto* const second = reinterpret_cast<const std::uint8_t*>(text.data()) + second_.distance;
        std::size_t at = 0;
        for (; end - at >= block; at += block) {
            if (visitHits(hits(first + at, second + at), at, visit)) return true;
        }
        if (at == end) return false;
        std::array<std::uint8_t, block> firstRest{};
        std::array<std::uint8_t, block> secondRest{};
        std::memcpy(firstRest.data(), first + at, end - at);
        std::memcpy(secondRest.data(), second + at, end - at);
        const std::uint64_t inside = (std::uint64_t{1} << (end - at)) - 1;
        return visitHits(hits(firstRest.data(), secondRest.data()) & inside, at, visit);
    }

private:
    static constexpr std::size_t block = 64;

    /// A bit for each of 64 places, the lowest for the first.
    std::uint64_t hits(const std::uint8_t* first, const std::uint8_t* second) const noexcept {
        std::array<std::uint8_t, block> hit;
        std::uint8_t some = 0;
        for (std::size_t index = 0; index < block; ++index) {
            const bool both = ((first[index] | first_.ignored) == first_.value) &
                              ((second[index] | second_.ignored) == second_.value);
            hit[index] = static_cast<std::uint8_t>(both);
            some = static_cast<std::uint8_t>(some | hit[index]);
        }
        if (some == 0) return 0;
        std::uint64_t bits = 0;
        for (unsigned group = 0; group < 8; ++group) {
            std::uint64_t bytes = 0;
            for (unsigned index = 0; index < 8; ++index)
                bytes |= std::uint64_t{hit[group * 8 + index]} << (8 * index);
            bits |= (bytes * 0x0102040810204080U >> 56) << (8 * group); // gathers the low bit of each byte
        }
        return bits;
    }

    template <typename Visit>
    static bool visitHits(std::uint64_t bits, std::size_t base, Visit& visit) {
        for (; bits != 0; bits &= bits - 1) {
            if (visit(base + static_cast<std::size_t>(std::countr_zero(bits)))) return true;
        }
        return false;
    }

    Byte first_;
    Byte second_;
};

} // namespace MailCore
