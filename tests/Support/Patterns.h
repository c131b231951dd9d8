#pragma once

#include <unicode/regex.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// What a scanner is compared with: the regular expression that it stands for, read by ICU, over texts made
/// of the pieces that matter to it.
namespace MailCore::Testing {

using Pieces = std::span<const std::string_view>;

class RandomTexts {
public:
    explicit RandomTexts(Pieces pieces) : pieces_(pieces) {}
    std::string next(std::size_t most) {
        std::string text;
        for (std::size_t count = random_() % (most + 1); count > 0; --count)
            text += pieces_[random_() % pieces_.size()];
        return text;
    }

private:
    Pieces pieces_;
    std::mt19937 random_{20'260'731};
};

inline icu::UnicodeString wide(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

inline std::string narrow(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

/// A regular expression read by ICU; `groups` of a match that took no part are absent.
class Pattern {
public:
    explicit Pattern(std::string_view pattern) {
        UErrorCode status = U_ZERO_ERROR;
        pattern_.reset(icu::RegexPattern::compile(wide(pattern), 0, status));
        if (U_FAILURE(status)) throw std::runtime_error(std::string(pattern));
    }
    using Groups = std::vector<std::optional<std::string>>;
    std::vector<Groups> matches(std::string_view text) const {
        const icu::UnicodeString input = wide(text);
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
        std::vector<Groups> result;
        while (matcher->find()) {
            Groups groups;
            for (std::int32_t group = 0; group <= matcher->groupCount(); ++group) {
                if (matcher->start(group, status) < 0) {
                    groups.emplace_back();
                } else {
                    groups.emplace_back(narrow(matcher->group(group, status)));
                }
            }
            result.push_back(std::move(groups));
        }
        return result;
    }
    bool finds(std::string_view text) const { return !matches(text).empty(); }
    std::string replaced(std::string_view text, std::string_view replacement) const {
        const icu::UnicodeString input = wide(text);
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(input, status));
        return narrow(matcher->replaceAll(wide(replacement), status));
    }

private:
    std::unique_ptr<icu::RegexPattern> pattern_;
};

} // namespace MailCore::Testing
