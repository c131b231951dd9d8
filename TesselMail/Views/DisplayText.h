#pragma once

#include "MailCore/Platform/URL.h"

#include <string>
#include <string_view>

namespace TesselMail {

/// `text` from a message as one line of the window: its direction kept to itself (U+2068 … U+2069), line
/// breaks as spaces, no longer than `characters` and ending within a word of 4,000. For display only, never
/// for a file name or an address to use.
std::string displayed(std::string_view text, std::size_t characters = 1'000);

/// The same for a widget that holds nothing else and lets people select in it: nothing is added for its
/// direction, as what is copied there is copied as it stands.
std::string displayedAlone(std::string_view text, std::size_t characters = 1'000);

/// That with its line breaks.
std::string displayedLines(std::string_view text, std::size_t characters = 16'000);

/// `text` whole, for a text widget: a word of 4,000 is broken in two, and a line after the word with which it
/// exceeds 16,000 bytes.
std::string inShortLines(std::string_view text);

/// A value of a message like that, without directions of its own.
std::string displayedWhole(std::string_view text);

/// What `displayed` made, as a screen reader should say it: without its isolates.
std::string spoken(std::string_view text);

/// The name of a file or folder for display, or its whole path; what is not UTF-8 in it becomes U+FFFD.
std::string displayedName(const MailCore::URL& url);
std::string displayedPath(const MailCore::URL& url);

} // namespace TesselMail
