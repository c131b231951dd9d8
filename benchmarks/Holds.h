#pragma once

#include "TesselMail/Model/AppModel.h"

#include <glib.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>

namespace TesselMail::Benchmarks {

/// Panels nobody answers.
class NoPanels : public FilePanels {
public:
    Later<std::vector<MailCore::URL>> open(OpenPanel) override {
        return Later<std::vector<MailCore::URL>>([](auto) {});
    }
    Later<std::optional<MailCore::URL>> save(SavePanel) override {
        return Later<std::optional<MailCore::URL>>([](auto) {});
    }
};

class NoDesktop : public Desktop {
public:
    void present() override {}
    Later<bool> becomeMailHandler() override {
        return Later<bool>([](auto) {});
    }
    Later<bool> showInFolder(const MailCore::URL&) override {
        return Later<bool>([](auto) {});
    }
};

/// Seconds since some moment.
inline double now() {
    return static_cast<double>(g_get_monotonic_time()) / 1e6;
}

/// Seconds that this thread has worked.
inline double worked() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// How long the main loop held the interface thread: each time from the return of one poll to the call of the
/// next, in seconds. Work is the thread's own processor time, which other programs do not lengthen.
struct Holds {
    double woke = now();
    double wokeWorked = worked();
    double longest = 0;
    double longestWork = 0;
    double sum = 0;
    std::size_t count = 0;
};

inline Holds& holds() {
    static Holds instance;
    return instance;
}

inline gint measuredPoll(GPollFD* files, guint count, gint timeout) {
    Holds& measured = holds();
    const double held = now() - measured.woke;
    measured.longest = std::max(measured.longest, held);
    measured.longestWork = std::max(measured.longestWork, worked() - measured.wokeWorked);
    measured.sum += held;
    ++measured.count;
    const gint result = g_poll(files, count, timeout);
    measured.woke = now();
    measured.wokeWorked = worked();
    return result;
}

/// Counts the turns of the main loop from now on.
inline void measureHolds() {
    g_main_context_set_poll_func(nullptr, measuredPoll);
}

/// What `action` and what follows it, until `done`, ask of the interface thread.
inline Holds during(const std::function<void()>& action, const std::function<bool()>& done) {
    g_main_context_iteration(nullptr, FALSE);
    holds() = Holds();
    action();
    while (!done()) g_main_context_iteration(nullptr, TRUE);
    // Once more through the poll, which is what counts the last turn.
    g_main_context_iteration(nullptr, FALSE);
    return holds();
}

} // namespace TesselMail::Benchmarks
