#pragma once

#include <array>
#include <optional>
#include <string_view>

/// Reads a date text with fixed patterns, as strict (non-lenient) Unicode LDML patterns in "en_US_POSIX" do.
namespace MailCore::DateParser {

/// A way to write a date.
struct Form {
    std::string_view pattern; // LDML; "yyyy" takes exactly four digits
    bool hasWeekday = false;  // in front, before a comma
    bool hasSeconds = true;
    bool hasLongYear = true;  // of four digits
    bool isISO = false;       // begins with the year (ISO 8601)
    bool isForDisplay = true; // also read when a date is to be shown
};

/// The forms that are read: of two that match a text the earlier one counts.
inline constexpr auto forms = std::to_array<Form>({
    {.pattern = "EEE, d MMM yyyy HH:mm:ss Z", .hasWeekday = true},
    {.pattern = "d MMM yyyy HH:mm:ss Z"},
    {.pattern = "EEE, d MMM yyyy HH:mm Z", .hasWeekday = true, .hasSeconds = false},
    {.pattern = "d MMM yyyy HH:mm Z", .hasSeconds = false},
    {.pattern = "EEE, d MMM yy HH:mm:ss Z", .hasWeekday = true, .hasLongYear = false, .isForDisplay = false},
    {.pattern = "yyyy-MM-dd'T'HH:mm:ss.SSSXXXXX", .isISO = true, .isForDisplay = false},
    {.pattern = "yyyy-MM-dd'T'HH:mm:ssXXXXX", .isISO = true, .isForDisplay = false},
});

/// Which of the forms are tried.
enum class Wanted { all, forDisplay };

struct Parsed {
    double seconds = 0;         // since 1970-01-01 UTC
    const Form* form = nullptr; // the one of `forms` that matched
    bool operator==(const Parsed&) const = default;
};

/// What the first of the wanted forms that matches the whole of `text` says. A two-digit year reaches the
/// form made for it, because no other takes it. The usual forms take a direct way, the rest ICU's; both
/// agree. Any thread.
std::optional<Parsed> parse(std::string_view text, Wanted wanted = Wanted::all);

/// The direct way alone: nothing also where only the formatters can tell. Reads forms that are for display.
std::optional<Parsed> parseUsualForm(std::string_view text);
/// The formatters alone.
std::optional<Parsed> parseWithFormatters(std::string_view text, Wanted wanted = Wanted::all);

} // namespace MailCore::DateParser
