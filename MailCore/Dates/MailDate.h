#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Message dates (RFC 5322 §3.3, and what is found in its place).
namespace MailCore::MailDate {

/// Seconds since 1970-01-01 UTC, or nothing when `text` cannot be read. Any thread.
std::optional<double> timestamp(std::string_view text);
/// What to show for `text` in the conventions of `locale` (an ICU locale identifier, as in "en_GB"): the
/// sender's own clock time and zone; `text` itself where it cannot be read. Cached; any thread.
std::string display(std::string_view text, std::string_view locale);
/// The uncached work behind `display`.
std::string formatted(std::string_view text, std::string_view locale);
/// `text` without RFC 5322 comments, or nothing when parentheses do not balance or nest deeper than 16.
std::optional<std::string> withoutComments(std::string_view text);

} // namespace MailCore::MailDate
