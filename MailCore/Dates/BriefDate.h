#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace MailCore {

/// Moments as a list shows them, in the conventions of one locale and the clock of one time zone: the time of
/// day for today, day and month for this year, else with the year. Not for use by two threads at once.
class BriefDate {
public:
    /// `locale` is an ICU identifier, as in "en_GB"; `zone` one of the time zone database, as in
    /// "Europe/Berlin", or empty for the system's.
    explicit BriefDate(std::string_view locale, std::string_view zone = {});
    BriefDate(const BriefDate&) = delete;
    BriefDate& operator=(const BriefDate&) = delete;
    ~BriefDate();

    /// `seconds` and `now` count from 1970-01-01 UTC. Empty where no calendar reaches.
    std::string text(double seconds, double now) const;

private:
    struct Formats;
    std::unique_ptr<const Formats> formats_;
};

} // namespace MailCore
