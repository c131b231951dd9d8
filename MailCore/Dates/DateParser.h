#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

/// Reads a date text with fixed patterns, as strict (non-lenient) Unicode LDML patterns in "en_US_POSIX" do.
namespace MailCore::DateParser {

inline constexpr auto patterns = std::to_array<std::string_view>({
    "EEE, d MMM yyyy HH:mm:ss Z",
    "d MMM yyyy HH:mm:ss Z",
    "EEE, d MMM yyyy HH:mm Z",
    "d MMM yyyy HH:mm Z",
    "EEE, d MMM yy HH:mm:ss Z",
    "yyyy-MM-dd'T'HH:mm:ss.SSSXXXXX",
    "yyyy-MM-dd'T'HH:mm:ssXXXXX",
});

struct Parsed {
    double seconds = 0;      // since 1970-01-01 UTC
    std::size_t pattern = 0; // index of the pattern that matched
    bool operator==(const Parsed&) const = default;
};

/// The first of the first `count` patterns that matches the whole of `text`. "yyyy" takes exactly four
/// digits, so that a two-digit year reaches the pattern made for it. The usual forms take a direct way, the
/// rest ICU's; both agree. Any thread.
std::optional<Parsed> parse(std::string_view text, std::size_t count = patterns.size());

/// The direct way alone: nothing also where only the formatters can tell.
std::optional<Parsed> parseUsualForm(std::string_view text, std::size_t count);
/// The formatters alone.
std::optional<Parsed> parseWithFormatters(std::string_view text, std::size_t count);

} // namespace MailCore::DateParser
