#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace MailCore {

/// Finds a name in a short table sorted by name, whose names begin with letters in lower case. Only names of
/// the same first letter and length are compared.
template <std::size_t size>
class NameTable {
public:
    /// `nameAt` gives the name at each place of the table.
    template <typename NameAt>
    constexpr explicit NameTable(NameAt nameAt) {
        static_assert(size < 256);
        for (std::size_t index = 0; index < size; ++index) {
            names_[index] = nameAt(index);
            for (std::size_t letter = letterOf(names_[index]) + 1; letter < starts_.size(); ++letter)
                starts_[letter] = static_cast<std::uint8_t>(index + 1);
        }
    }

    /// The place of `name`, which is in lower case.
    constexpr std::optional<std::size_t> find(std::string_view name) const noexcept {
        if (name.empty() || name[0] < 'a' || name[0] > 'z') return std::nullopt;
        const std::size_t letter = letterOf(name);
        for (std::size_t index = starts_[letter]; index < starts_[letter + 1]; ++index) {
            if (names_[index].size() == name.size() && names_[index] == name) return index;
        }
        return std::nullopt;
    }

private:
    static constexpr std::size_t letterOf(std::string_view name) noexcept {
        return static_cast<std::size_t>(name[0] - 'a');
    }
    std::array<std::string_view, size> names_{};
    std::array<std::uint8_t, 27> starts_{}; // letter → the first place of its names
};

} // namespace MailCore
