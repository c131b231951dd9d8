#pragma once

#include "MailCore/Platform/BytePair.h"

#include <string>
#include <string_view>

namespace MailCore {

/// Bytes to look for in texts, some of them in two forms.
class PlainPattern {
public:
    enum class Answer { yes, no, unknown };

    PlainPattern() = default;
    /// `bytes`, not empty, as they stand; a byte for which `ignored` has bits set also where the text has
    /// some of those bits clear. `ignored` is as long or empty.
    explicit PlainPattern(std::string bytes, std::string ignored = {});

    /// Calls `accept(place)` where the bytes stand in `text` until it answers true; whether it did. Unknown
    /// when finding out would cost more than a few looks at each byte of the text.
    template <typename Accept>
    Answer find(std::string_view text, Accept accept) const {
        if (text.size() < bytes_.size()) return Answer::no;
        const std::size_t allowed = 4 * text.size() + 4'096;
        std::size_t compared = 0;
        const bool stopped = pair_.any(text, text.size() - bytes_.size() + 1, [&](std::size_t place) {
            const std::size_t same = sameBytes(text.substr(place));
            compared += same;
            if (same == bytes_.size() && accept(place)) return true;
            return compared > allowed;
        });
        if (!stopped) return Answer::no;
        return compared > allowed ? Answer::unknown : Answer::yes;
    }

    std::size_t size() const noexcept { return bytes_.size(); }

private:
    /// How many of the bytes stand at the start of `text`, which is long enough.
    std::size_t sameBytes(std::string_view text) const noexcept {
        std::size_t same = 0;
        while (same < bytes_.size() && static_cast<char>(text[same] | ignored_[same]) == bytes_[same]) ++same;
        return same;
    }

    std::string bytes_;
    std::string ignored_;
    BytePair pair_;
};

} // namespace MailCore
