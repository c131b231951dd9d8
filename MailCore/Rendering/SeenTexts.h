#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace MailCore {

/// Remembers what was made of texts seen before, `size` of them at most: a newer text takes the place of an
/// older one. Borrows the texts.
template <typename Output, std::size_t size>
class SeenTexts {
public:
    /// What was remembered of `text`; null when nothing is.
    const Output* find(std::string_view text) const noexcept {
        if (text.empty()) return nullptr;
        const Entry& entry = entries_[slot(text)];
        return entry.text == text ? &entry.output : nullptr;
    }
    void remember(std::string_view text, const Output& output) noexcept {
        if (!text.empty()) entries_[slot(text)] = {text, output};
    }

private:
    struct Entry {
        std::string_view text;
        Output output;
    };

    static std::size_t slot(std::string_view text) noexcept {
        std::uint64_t first = 0;
        std::uint64_t middle = 0;
        std::uint64_t last = 0;
        const std::size_t taken = std::min<std::size_t>(text.size(), 8);
        std::memcpy(&first, text.data(), taken);
        std::memcpy(&middle, text.data() + (text.size() - taken) / 2, taken);
        std::memcpy(&last, text.data() + text.size() - taken, taken);
        std::uint64_t hash = (first ^ text.size()) * 0x9E3779B97F4A7C15U;
        hash = (hash ^ hash >> 29 ^ middle) * 0xBF58476D1CE4E5B9U;
        hash = (hash ^ hash >> 32 ^ last) * 0x94D049BB133111EBU;
        return static_cast<std::size_t>(hash >> 40) % size;
    }

    std::array<Entry, size> entries_{};
};

} // namespace MailCore
