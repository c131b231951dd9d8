// tessel-model-run FILE QUERY: opens, searches and closes the archive as the application does, without a
// window, and prints how long people wait, how long the interface thread is held at most, and what it all
// weighs.

#include "TesselMail/Platform/InterfaceThread.h"
#include "benchmarks/Holds.h"

#include <malloc.h>

#include <cstdio>
#include <fstream>
#include <unistd.h>

using namespace TesselMail;
using namespace TesselMail::Benchmarks;

namespace {

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
    measureHolds();
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
