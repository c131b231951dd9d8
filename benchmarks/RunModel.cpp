// tessel-model-run FILE QUERY: opens, searches and closes the archive as the application does, without a
// window, and prints how long people wait, how long the interface thread is held at most, and what it all
// weighs.

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/InterfaceThread.h"

#include <glib.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <unistd.h>

using namespace TesselMail;

namespace {

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

double now() {
    return static_cast<double>(g_get_monotonic_time()) / 1e6;
}

// The loop holds the thread from the return of one poll to the call of the next.
struct Holds {
    double woke = now();
    double longest = 0;
    double sum = 0;
    std::size_t count = 0;
};
Holds holds;

gint measuredPoll(GPollFD* files, guint count, gint timeout) {
    const double held = now() - holds.woke;
    holds.longest = std::max(holds.longest, held);
    holds.sum += held;
    ++holds.count;
    const gint result = g_poll(files, count, timeout);
    holds.woke = now();
    return result;
}

/// What `action` and what follows it, until `holds`, ask of the interface thread.
Holds during(const std::function<void()>& action, const std::function<bool()>& done) {
    g_main_context_iteration(nullptr, FALSE);
    holds = Holds();
    action();
    while (!done()) g_main_context_iteration(nullptr, TRUE);
    // Once more through the poll, which is what counts the last turn.
    g_main_context_iteration(nullptr, FALSE);
    return holds;
}

double residentMegabytes() {
    ::malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    std::size_t size = 0;
    std::size_t resident = 0;
    file >> size >> resident;
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

void say(const char* what, const Holds& of, double seconds) {
    std::printf("| %s | %.3f s | %.1f ms | %.0f ms in %zu turns |\n", what, seconds, of.longest * 1e3,
                of.sum * 1e3, of.count);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    g_main_context_set_poll_func(nullptr, measuredPoll);
    Preferences preferences("/dev/null/none", {"en"});
    NoPanels panels;
    NoDesktop desktop;
    const auto model = AppModel::create(preferences, panels, desktop);
    const auto listIsWhole = [&] {
        return !*model->busy && !*model->reading && model->active() &&
               (*model->filteredEntries)->size() == model->active()->entries.size();
    };

    const double before = residentMegabytes();
    double begin = now();
    double firstRow = 0;
    model->collections.signalChanged().connect([&] {
        if (firstRow == 0 && !model->entries()->empty()) firstRow = now() - begin;
    });
    const Holds opening = during([&] { model->open({MailCore::URL::file(arguments[1])}); }, listIsWhole);
    const double whole = now() - begin;
    const double after = residentMegabytes();
    const auto entries = model->active()->entries.size();
    const auto charged = static_cast<double>(model->active()->metadataBytes) / 1e6;

    begin = now();
    const Holds searching =
        during([&] { model->setQuery(arguments[2]); }, [&] { return !*model->searching; });
    const double searched = now() - begin;
    begin = now();
    const Holds ordering = during(
        [&] {
            model->setQuery("");
            model->setNewestFirst(false);
        },
        listIsWhole);
    const double ordered = now() - begin;
    begin = now();
    bool closed = false;
    const Holds closing = during(
        [&] {
            model->closeAll();
            InterfaceThread::postAfter(std::chrono::milliseconds(300), [&] { closed = true; });
        },
        [&] { return closed; });

    std::printf("%zu entries; first row after %.3f s; %.1f MB resident for %.1f MB charged\n", entries,
                firstRow, after - before, charged);
    say("open", opening, whole);
    say("search", searching, searched);
    say("list all in another order", ordering, ordered);
    say("close", closing, now() - begin - 0.3);
    ArchiveWork::finish();
}
