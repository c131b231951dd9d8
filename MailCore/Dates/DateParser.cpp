#include "MailCore/Dates/DateParser.h"

#include "MailCore/Dates/DateNames.h"
#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <utility>

namespace MailCore::DateParser {

namespace {

/// Reads the parts of a date from left to right; once a part is missing, `failed` stays set.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    bool failed() const noexcept { return failed_; }
    bool atEnd() const noexcept { return at_ == text_.size(); }
    bool nextIsDigit() const noexcept { return at_ < text_.size() && ASCII::isDigit(text_[at_]); }

    bool take(char expected) noexcept {
        if (at_ >= text_.size() || text_[at_] != expected) return false;
        ++at_;
        return true;
    }
    void require(char expected) noexcept {
        if (!take(expected)) failed_ = true;
    }
    /// One blank or more.
    void requireBlanks() noexcept {
        require(' ');
        while (take(' ')) {
        }
    }
    bool take(std::string_view expected) noexcept {
        if (!text_.substr(at_).starts_with(expected)) return false;
        at_ += expected.size();
        return true;
    }
    /// A number of `least` to `most` digits, and no further digit.
    int number(std::size_t least, std::size_t most) noexcept {
        int value = 0;
        std::size_t digits = 0;
        for (; nextIsDigit(); ++at_, ++digits) {
            if (digits < most) value = value * 10 + (text_[at_] - '0');
        }
        if (digits < least || digits > most) failed_ = true;
        return value;
    }
    /// The index of the three-letter name at the current place, ASCII case ignored, not followed by a letter.
    std::size_t name(std::span<const std::string_view> names) noexcept {
        for (std::size_t index = 0; index < names.size(); ++index) {
            if (!Text::equalsIgnoringCase(text_.substr(at_, 3), names[index])) continue;
            at_ += 3;
            if (at_ < text_.size() && ASCII::isLetter(text_[at_])) break;
            return index;
        }
        failed_ = true;
        return 0;
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
    bool failed_ = false;
};

/// ICU's reading of one form.
struct Formatter {
    const Form* form = nullptr;
    std::unique_ptr<icu::SimpleDateFormat> format;
};
using Formatters = std::array<Formatter, forms.size()>;

Formatter makeFormatter(const Form& form) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale("en_US_POSIX");
    auto calendar = std::make_unique<icu::GregorianCalendar>(*icu::TimeZone::getGMT(), locale, status);
    auto format = std::make_unique<icu::SimpleDateFormat>(
        icu::UnicodeString::fromUTF8({form.pattern.data(), static_cast<std::int32_t>(form.pattern.size())}),
        locale, status);
    if (U_FAILURE(status)) throw std::runtime_error("no date patterns");
    format->adoptCalendar(calendar.release());
    format->setLenient(false);
    return {&form, std::move(format)};
}

Formatters makeFormatters() {
    Formatters made;
    std::ranges::transform(forms, made.begin(), makeFormatter);
    return made;
}

/// The first digit, of any script, at or after `at`; the end of `text` when there is none.
std::size_t firstDigit(std::string_view text, std::size_t at) {
    while (at < text.size()) {
        const std::size_t start = at;
        if (u_isdigit(static_cast<UChar32>(Text::next(text, at)))) return start;
    }
    return at;
}

/// Moves `at` past the digits that begin there; how many they are.
std::size_t skipDigits(std::string_view text, std::size_t& at) {
    for (std::size_t digits = 0;; ++digits) {
        std::size_t behind = at;
        if (at == text.size() || !u_isdigit(static_cast<UChar32>(Text::next(text, behind)))) return digits;
        at = behind;
    }
}

/// Whether the year that `form` reads in `text` has exactly four digits.
bool isYearLong(std::string_view text, const Form& form) {
    std::size_t at = 0;
    if (!form.isISO) {
        // Day, month, year; a weekday in front ends with a comma.
        const std::size_t comma = text.find(',');
        at = firstDigit(text, comma == std::string_view::npos ? 0 : comma);
        skipDigits(text, at);
        at = firstDigit(text, at);
        if (at == text.size() || text[at - 1] == '-' || text[at - 1] == '+') return false;
    }
    return skipDigits(text, at) == 4;
}

/// The form of a usual date. A usual date has a year of four digits.
const Form& usualForm(bool hasWeekday, bool hasSeconds) noexcept {
    return *std::ranges::find_if(forms, [=](const Form& form) {
        return form.isForDisplay && form.hasWeekday == hasWeekday && form.hasSeconds == hasSeconds;
    });
}
static_assert(std::ranges::count(forms, true, &Form::isForDisplay) == 4 &&
              std::ranges::none_of(forms, [](const Form& form) {
                  return form.isForDisplay && (form.isISO || !form.hasLongYear);
              }));

/// Seconds east of UTC: a name that means UTC, or a sign and four digits up to 14:59.
std::optional<int> takeZone(Scanner& scan) {
    for (const std::string_view name : {"GMT", "UTC", "UT", "Z"}) {
        if (scan.take(name)) return 0;
    }
    const bool isNegative = scan.take('-');
    if (!isNegative) scan.require('+');
    const int digits = scan.number(4, 4);
    if (digits / 100 > 14 || digits % 100 > 59) return std::nullopt;
    const int seconds = (digits / 100 * 60 + digits % 100) * 60;
    return isNegative ? -seconds : seconds;
}

} // namespace

std::optional<Parsed> parseUsualForm(std::string_view text) {
    Scanner scan(text);
    const bool hasWeekday = !scan.nextIsDigit();
    if (hasWeekday) {
        scan.name(DateNames::weekdays);
        scan.require(',');
        scan.requireBlanks();
    }
    const int day = scan.number(1, 2);
    scan.requireBlanks();
    const std::size_t month = scan.name(DateNames::months);
    scan.requireBlanks();
    const int year = scan.number(4, 4);
    scan.requireBlanks();
    const int hour = scan.number(2, 2);
    scan.require(':');
    const int minute = scan.number(2, 2);
    const bool hasSeconds = scan.take(':');
    const int second = hasSeconds ? scan.number(2, 2) : 0;
    scan.requireBlanks();
    const std::optional<int> zone = takeZone(scan);
    if (!zone || scan.failed() || !scan.atEnd()) return std::nullopt;
    // Before 1583 calendars differ: the formatters know.
    if (year < 1583 || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month) + 1),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok()) return std::nullopt;
    const auto days = std::chrono::sys_days(date).time_since_epoch().count();
    const std::int64_t clock = (hour * 60 + minute) * 60 + second;
    return Parsed{static_cast<double>(static_cast<std::int64_t>(days) * 86'400 + clock - *zone),
                  &usualForm(hasWeekday, hasSeconds)};
}

std::optional<Parsed> parseWithFormatters(std::string_view text, Wanted wanted) {
    if (text.empty()) return std::nullopt;
    // A formatter is never shared between threads: a parse changes it.
    thread_local const Formatters formatters = makeFormatters();
    const auto wide = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    for (const Formatter& formatter : formatters) {
        const Form& form = *formatter.form;
        if (wanted == Wanted::forDisplay && !form.isForDisplay) continue;
        if (form.hasLongYear && !isYearLong(text, form)) continue;
        icu::ParsePosition position;
        const UDate instant = formatter.format->parse(wide, position);
        if (position.getErrorIndex() < 0 && position.getIndex() == wide.length())
            return Parsed{instant / 1'000, &form};
    }
    return std::nullopt;
}

std::optional<Parsed> parse(std::string_view text, Wanted wanted) {
    if (const std::optional<Parsed> parsed = parseUsualForm(text)) return parsed;
    // Every pattern begins with a letter or a digit and holds a digit: what does not, no formatter need see.
    if (text.find_first_of("0123456789") == std::string_view::npos) return std::nullopt;
    return parseWithFormatters(text, wanted);
}

} // namespace MailCore::DateParser
