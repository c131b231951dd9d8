// tessel-window-run FILE QUERY [RUNS]: opens, reorders, searches, interrupts and closes the archive in the
// real window, and prints how long the interface thread is held at most: least, median and most of the runs
// (5), by the clock and by the thread's own processor time. QUERY is found in few messages. Needs a display.

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Views/MainWindow.h"
#include "benchmarks/Holds.h"

#include <adwaita.h>
#include <gtkmm.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace TesselMail;
using namespace TesselMail::Benchmarks;
using MailCore::URL;

namespace {

// The folder of this run: settings, and a letter to open beside the archive.
class Folder {
public:
    Folder() {
        std::string name = std::string(g_get_tmp_dir()) + "/tessel-window-XXXXXX";
        if (!g_mkdtemp(name.data())) std::abort();
        path_ = name;
        for (const char* const part :
             {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
            g_setenv(part, path_.c_str(), TRUE);
        std::ofstream(path_ + "/letter.eml") << "From: ann@tessel.example\nSubject: Letter\n\nHello\n";
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    URL letter() const { return URL::file(path_ + "/letter.eml"); }
    std::string path(const char* name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

class WindowRun {
public:
    WindowRun(URL archive, std::string query) : archive_(std::move(archive)), query_(std::move(query)) {
        window_->present();
        quiet([this] { model_->open({folder_.letter()}); });
        quiet([this] { model_->closeAll(); });
    }
    ~WindowRun() {
        model_->closeAll();
        window_.reset();
        model_.reset();
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
        ArchiveWork::finish();
    }

    void round() {
        take(
            "the list grows", [this] { model_->open({archive_}); }, whole_);
        take(
            "order", [this] { model_->setNewestFirst(!*model_->newestFirst); }, whole_);
        quiet([this] { model_->select(model_->entries()->at(model_->entries()->size() / 2)->id); });
        take(
            "order, a row in the middle selected", [this] { model_->setNewestFirst(!*model_->newestFirst); },
            whole_);
        take(
            "search", [this] { model_->setQuery(query_); }, found_);
        take(
            "search cleared", [this] { model_->setQuery(""); }, whole_);
        take(
            "close", [this] { model_->closeAll(); }, settled_);
        growHalf();
        take(
            "interrupted by another file", [this] { model_->open({folder_.letter()}); }, whole_);
        take(
            "back to the archive", [this] { model_->selectCollection(model_->collections->front().id); },
            whole_);
        take(
            "close one of two", [this] { model_->closeCollection(model_->collections->front().id); }, whole_);
        quiet([this] { model_->closeAll(); });
        growHalf();
        take(
            "interrupted by its close", [this] { model_->closeCollection(model_->active()->id); }, settled_);
    }

    void print() {
        for (const std::string& name : order_) {
            auto& [wall, work] = taken_.at(name);
            std::printf("| %s |", name.c_str());
            for (auto* const values : {&wall, &work}) {
                std::ranges::sort(*values);
                std::printf(" %.1f / %.1f / %.1f ms |", values->front() * 1e3,
                            (*values)[values->size() / 2] * 1e3, values->back() * 1e3);
            }
            std::printf("\n");
        }
    }

private:
    // Until it is done and drawn: frames follow for a while.
    Holds until(const std::function<void()>& action, const std::function<bool()>& done) {
        double since = 0;
        bool timed = false;
        return during(action, [&] {
            if (!done()) {
                since = 0;
            } else if (since == 0) {
                since = now();
                timed = false;
                InterfaceThread::postAfter(std::chrono::milliseconds(400), [&timed] { timed = true; });
            }
            return timed && since != 0 && now() - since >= 0.4;
        });
    }
    void take(const char* name, const std::function<void()>& action, const std::function<bool()>& done) {
        const Holds held = until(action, done);
        if (!taken_.contains(name)) order_.emplace_back(name);
        taken_[name].first.push_back(held.longest);
        taken_[name].second.push_back(held.longestWork);
    }
    void quiet(const std::function<void()>& action) { until(action, settled_); }
    void growHalf() {
        during([this] { model_->open({archive_}); },
               [this] { return model_->active() && model_->active()->entries.size() > 60'000; });
    }

    Folder folder_;
    URL archive_;
    std::string query_;
    Preferences preferences_{folder_.path("preferences.ini"), {"en"}};
    NoPanels panels_;
    NoDesktop desktop_;
    std::shared_ptr<AppModel> model_ = AppModel::create(preferences_, panels_, desktop_);
    WindowState state_{folder_.path("window.ini")};
    std::unique_ptr<MainWindow> window_ = std::make_unique<MainWindow>(*model_, state_);
    std::vector<std::string> order_;
    std::map<std::string, std::pair<std::vector<double>, std::vector<double>>> taken_;

    const std::function<bool()> settled_ = [this] {
        return !*model_->busy && !*model_->reading && !model_->listPending();
    };
    const std::function<bool()> whole_ = [this] {
        return settled_() && model_->active() &&
               (*model_->filteredEntries)->size() == model_->active()->entries.size();
    };
    const std::function<bool()> found_ = [this] {
        return settled_() && (*model_->filteredEntries)->size() < model_->active()->entries.size();
    };
};

} // namespace

int main(int count, char** arguments) {
    if (count != 3 && count != 4) return 2;
    g_setenv("GIO_USE_VFS", "local", TRUE);
    g_set_prgname("tessel-mail");
    const auto application =
        Gtk::Application::create("org.tesselmail.TesselMail.WindowRun", Gio::Application::Flags::NON_UNIQUE);
    gtk_init();
    adw_init();
    measureHolds();
    WindowRun run(URL::file(arguments[1]), arguments[2]);
    const int rounds = count == 4 ? std::atoi(arguments[3]) : 5;
    for (int round = 0; round < rounds; ++round) run.round();
    run.print();
}
