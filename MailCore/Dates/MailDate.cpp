#include "MailCore/Dates/MailDate.h"

#include "MailCore/Dates/DateParser.h"
#include "MailCore/Dates/DisplayCache.h"
#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF16.h"
#include "MailCore/Platform/UTF8.h"

#include <fmt/format.h>
#include <unicode/datefmt.h>
#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>

namespace MailCore::MailDate {

namespace {

constexpr std::size_t largestValue = 4'096; // bytes
constexpr int mostCommentLevels = 16;
constexpr int mostZoneSeconds = 18 * 3'600; // seconds either way

/// Whether the code point at `at` joins the character before it.
bool extendsCharacter(std::string_view text, std::size_t at) {
    if (at >= text.size() || isASCII(text[at])) return false;
    const auto codePoint = static_cast<UChar32>(Text::next(text, at));
    switch (u_getIntPropertyValue(codePoint, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_EXTEND:
    case U_GCB_ZWJ:
    case U_GCB_SPACING_MARK: return true;
    default: return false;
    }
}

struct Zone {
    int offset = 0;        // seconds east of UTC
    std::string_view rest; // the date before it
};

/// "(?:^|\s)([+-])(\d{2}):?(\d{2})$" over text whose only white space is single blanks.
std::optional<Zone> numericZone(std::string_view text) {
    const std::size_t blank = text.rfind(' ');
    const std::size_t start = blank == std::string_view::npos ? 0 : blank + 1;
    const std::string_view word = text.substr(start);
    if (word.size() != 5 && word.size() != 6) return std::nullopt;
    if (word[0] != '+' && word[0] != '-') return std::nullopt;
    if (word.size() == 6 && word[3] != ':') return std::nullopt;
    const std::size_t minutesAt = word.size() - 2;
    int values[2] = {};
    const std::size_t places[2] = {1, minutesAt};
    for (int index = 0; index < 2; ++index) {
        for (const char digit : word.substr(places[index], 2)) {
            if (!ASCII::isDigit(digit)) return std::nullopt;
            values[index] = values[index] * 10 + (digit - '0');
        }
    }
    if (values[0] > 23 || values[1] > 59) return std::nullopt;
    const int offset = values[0] * 3'600 + values[1] * 60;
    return Zone{word[0] == '-' ? -offset : offset, Text::trimmed(text.substr(0, start))};
}

std::optional<Zone> namedZone(std::string_view text) {
    static constexpr auto names = std::to_array<std::string_view>({"UT", "UTC", "GMT", "Z"});
    const std::size_t blank = text.rfind(' ');
    const std::size_t start = blank == std::string_view::npos ? 0 : blank + 1;
    const std::string word = Text::uppered(text.substr(start));
    for (const std::string_view name : names) {
        if (word == name) return Zone{0, Text::trimmed(text.substr(0, start))};
    }
    return std::nullopt;
}

std::string zoneLabel(int offset) {
    const int magnitude = std::abs(offset);
    const int minutes = magnitude % 3'600 / 60;
    std::string label = fmt::format("UTC{}{}", offset < 0 ? '-' : '+', magnitude / 3'600);
    if (minutes != 0) label += fmt::format(":{:02d}", minutes);
    return label;
}

// A format is slow to make, and gets fast after its first numbers: a thread keeps those of the locale it used
// last.
class Formats {
public:
    /// Null where there is none. Belongs to this.
    icu::DateFormat* find(bool withSeconds, std::string_view locale) {
        if (locale_ != locale) {
            locale_ = locale;
            formats_ = {};
        }
        std::unique_ptr<icu::DateFormat>& format = formats_[withSeconds ? 1 : 0];
        if (!format) format = make(withSeconds, locale_);
        return format.get();
    }

private:
    static std::unique_ptr<icu::DateFormat> make(bool withSeconds, const std::string& locale) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale conventions = icu::Locale::createCanonical(locale.c_str());
        if (conventions.isBogus()) conventions = icu::Locale::getEnglish(); // a name that nobody knows
        conventions.setKeywordValue("calendar", "gregorian", status);
        if (U_FAILURE(status)) return nullptr;
        return std::unique_ptr<icu::DateFormat>(icu::DateFormat::createDateTimeInstance(
            icu::DateFormat::kMedium, withSeconds ? icu::DateFormat::kMedium : icu::DateFormat::kShort,
            conventions));
    }

    std::string locale_;
    std::array<std::unique_ptr<icu::DateFormat>, 2> formats_; // without seconds, with them
};

std::optional<std::string> written(double seconds, bool withSeconds, int offset, std::string_view locale) {
    thread_local Formats formats;
    icu::DateFormat* const format = formats.find(withSeconds, locale);
    if (!format) return std::nullopt;
    format->adoptTimeZone(
        std::make_unique<icu::SimpleTimeZone>(offset * 1'000, icu::UnicodeString()).release());
    icu::UnicodeString wide;
    format->format(seconds * 1'000, wide);
    std::string text;
    wide.toUTF8String(text);
    return text;
}

DisplayCache& displayCache() {
    static DisplayCache cache;
    return cache;
}

} // namespace

std::optional<std::string> withoutComments(std::string_view text) {
    const auto isParenthesis = [](char byte) { return byte == '(' || byte == ')'; };
    std::string result;
    result.reserve(text.size());
    int depth = 0;
    bool escaped = false;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (depth == 0) { // outside comments only parentheses matter
            at = static_cast<std::size_t>(
                std::find_if(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isParenthesis) -
                text.begin());
            result.append(text.substr(start, at - start));
            if (at == text.size()) break;
        }
        const std::size_t place = at;
        const char32_t codePoint = Text::next(text, at);
        const bool stands = !extendsCharacter(text, at); // "(" with an accent is not "("
        if (escaped) {
            escaped = false;
        } else if (depth > 0 && codePoint == '\\' && stands) {
            escaped = true;
        } else if (codePoint == '(' && stands) {
            if (++depth > mostCommentLevels) return std::nullopt;
            if (depth == 1) result += ' ';
        } else if (codePoint == ')' && stands) {
            if (--depth < 0) return std::nullopt;
        } else if (depth == 0) {
            result.append(text.substr(place, at - place));
        }
    }
    if (depth > 0) return std::nullopt;
    return result;
}

std::optional<double> timestamp(std::string_view text) {
    if (text.size() > largestValue) return std::nullopt;
    const std::optional<std::string> plain = withoutComments(text);
    if (!plain) return std::nullopt;
    const std::optional<DateParser::Parsed> parsed = DateParser::parse(Text::trimmed(*plain));
    if (!parsed) return std::nullopt;
    return parsed->seconds;
}

std::string display(std::string_view text, std::string_view locale) {
    if (text.size() > largestValue) return std::string(text);
    std::string key(locale);
    key += '\0';
    key += text;
    if (std::optional<std::string> known = displayCache().find(key)) return *std::move(known);
    std::string shown = formatted(text, locale);
    displayCache().store(key, shown, 2 * Text::lengthInUTF16(key) + shown.size());
    return shown;
}

std::string formatted(std::string_view text, std::string_view locale) {
    const std::string unchanged(text);
    if (text.size() > largestValue) return unchanged;
    const std::optional<std::string> plain = withoutComments(text);
    if (!plain) return unchanged;
    const std::string value = Text::withSingleBlanks(*plain);
    std::optional<Zone> zone = numericZone(value);
    if (!zone) zone = namedZone(value);
    if (!zone) return unchanged;
    const std::string label = zoneLabel(zone->offset);
    const std::string partly = fmt::format("{} {}", zone->rest, label);
    if (std::abs(zone->offset) > mostZoneSeconds) return partly;
    const int magnitude = std::abs(zone->offset);
    const std::string complete = fmt::format("{} {}{:02d}{:02d}", zone->rest, zone->offset < 0 ? '-' : '+',
                                             magnitude / 3'600, magnitude % 3'600 / 60);
    const std::optional<DateParser::Parsed> parsed =
        DateParser::parse(complete, DateParser::Wanted::forDisplay);
    if (!parsed) return partly;
    const std::optional<std::string> date =
        written(parsed->seconds, parsed->form->hasSeconds, zone->offset, locale);
    return date ? fmt::format("{} {}", *date, label) : partly;
}

} // namespace MailCore::MailDate
