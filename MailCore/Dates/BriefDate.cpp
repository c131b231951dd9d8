#include "MailCore/Dates/BriefDate.h"

#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include <cmath>

namespace MailCore {
namespace {

constexpr double farthest = 1e11; // seconds: three thousand years either way

icu::TimeZone* zoneNamed(std::string_view name) {
    return name.empty() ? icu::TimeZone::createDefault()
                        : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(std::string(name)));
}

} // namespace

struct BriefDate::Formats {
    Formats(const icu::Locale& locale, std::string_view zone) : calendar(zoneNamed(zone), locale, status) {
        const std::unique_ptr<icu::DateTimePatternGenerator> patterns(
            icu::DateTimePatternGenerator::createInstance(locale, status));
        if (U_FAILURE(status)) return;
        const auto format = [&](const char16_t* skeleton) {
            auto made = std::make_unique<icu::SimpleDateFormat>(patterns->getBestPattern(skeleton, status),
                                                                locale, status);
            made->setTimeZone(calendar.getTimeZone());
            return made;
        };
        time = format(u"jmm");
        day = format(u"MMMd");
        whole = format(u"yMMMd");
    }

    struct Day {
        std::int32_t year = 0;
        std::int32_t ofYear = 0;
    };
    Day dayOf(double seconds) const {
        UErrorCode error = U_ZERO_ERROR;
        icu::GregorianCalendar asked(calendar);
        asked.setTime(seconds * 1'000, error);
        return {asked.get(UCAL_EXTENDED_YEAR, error), asked.get(UCAL_DAY_OF_YEAR, error)};
    }

    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar calendar;
    std::unique_ptr<icu::SimpleDateFormat> time;
    std::unique_ptr<icu::SimpleDateFormat> day;
    std::unique_ptr<icu::SimpleDateFormat> whole;
};

BriefDate::BriefDate(std::string_view locale, std::string_view zone) {
    icu::Locale conventions = icu::Locale::createCanonical(std::string(locale).c_str());
    if (conventions.isBogus()) conventions = icu::Locale::getEnglish(); // a name that nobody knows
    UErrorCode status = U_ZERO_ERROR;
    conventions.setKeywordValue("calendar", "gregorian", status);
    formats_ = std::make_unique<const Formats>(conventions, zone);
}

BriefDate::~BriefDate() = default;

std::string BriefDate::text(double seconds, double now) const {
    if (U_FAILURE(formats_->status) || !(std::abs(seconds) < farthest)) return {};
    const Formats::Day then = formats_->dayOf(seconds);
    const Formats::Day today = formats_->dayOf(now);
    const icu::SimpleDateFormat& format = then.year != today.year       ? *formats_->whole
                                          : then.ofYear != today.ofYear ? *formats_->day
                                                                        : *formats_->time;
    icu::UnicodeString wide;
    format.format(seconds * 1'000, wide);
    std::string text;
    return wide.toUTF8String(text);
}

} // namespace MailCore
