#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Platform/InterfaceThread.h"
#include "tests/Support/MailBuilder.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <glib.h>

#include <functional>
#include <string>
#include <vector>

namespace TesselMail::Testing {

using MailCore::URL;
using MailCore::Testing::Mail;

/// Panels that answer with what the test prepared, and remember what they were asked.
class PreparedPanels : public FilePanels {
public:
    std::vector<URL> chosen;
    std::optional<URL> destination;
    std::vector<std::string> proposedNames;

    Later<std::vector<URL>> open(OpenPanel) override { return answer(chosen); }
    Later<std::optional<URL>> save(SavePanel panel) override {
        proposedNames.push_back(panel.name);
        return answer(destination);
    }

private:
    template <typename Value>
    static Later<Value> answer(Value value) {
        return Later<Value>([value](typename Later<Value>::Finish finish) {
            InterfaceThread::post([finish, value] { finish(value); });
        });
    }
};

/// A desktop that remembers what it was asked.
class PreparedDesktop : public Desktop {
public:
    int presented = 0;
    bool hasFileManager = true;
    std::vector<URL> shownInFolder;

    void present() override { ++presented; }
    Later<bool> becomeMailHandler() override {
        return Later<bool>([](Later<bool>::Finish finish) {
            InterfaceThread::post([finish = std::move(finish)] { finish(true); });
        });
    }
    Later<bool> showInFolder(const URL& file) override {
        shownInFolder.push_back(file);
        return Later<bool>([there = hasFileManager](Later<bool>::Finish finish) {
            InterfaceThread::post([finish = std::move(finish), there] { finish(there); });
        });
    }
};

/// A test with a main loop, on which the results of background work arrive.
class MainLoopTest : public testing::Test {
protected:
    /// Waits until no background work is left that could reach what the test has made.
    static void finishWork() {
        drain(); // what is posted may still give work to the queues
        ArchiveWork::finish();
        drain();
    }
    static void drain() {
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    }

    /// Runs the main loop until `holds`; the test fails when that takes a minute.
    static void waitUntil(const std::function<bool()>& holds) {
        const gint64 limit = g_get_monotonic_time() + 60 * G_USEC_PER_SEC;
        while (!holds()) {
            if (g_get_monotonic_time() > limit) {
                ADD_FAILURE() << "waited too long";
                return;
            }
            if (!g_main_context_iteration(nullptr, FALSE)) g_usleep(500);
        }
    }
};

/// A model on the test's own main loop, with files of the test's own.
class ModelTest : public MainLoopTest {
protected:
    explicit ModelTest(std::string language = "en_GB")
        : preferences_(settings_.path("preferences.ini").string(), {std::move(language)}) {}
    ~ModelTest() override {
        model_->closeAll();
        model_.reset();
        finishWork();
    }
    void settle() {
        waitUntil([this] { return !*model_->busy && !*model_->reading; });
        const auto* const active = model_->active();
        const std::size_t count = active ? active->entries.size() : 0;
        waitUntil([&] { return (*model_->filteredEntries)->size() == count; });
    }
    void open(const std::vector<URL>& urls) {
        model_->open(urls);
        settle();
    }

    /// A mailbox of messages with these subjects, a day apart and oldest first.
    std::string mailbox(const std::vector<std::string>& subjects) const {
        std::string content;
        int day = 0;
        for (const std::string& subject : subjects) {
            const std::string date = std::to_string(++day % 28 + 1) + " Jan 2024 10:00:00 +0000";
            content += "From sender@tessel.example Mon Jan  1 10:00:00 2024\n";
            content += Mail()
                           .from("sender@tessel.example")
                           .subject(subject)
                           .date(date)
                           .lineEnd("\n")
                           .text("Hello\n")
                           .string();
            content += "\n";
        }
        return content;
    }
    URL letter(const std::string& name, const std::string& subject) const {
        return folder_.write(name,
                             Mail().from("sender@tessel.example").subject(subject).text("Hello").string());
    }
    std::vector<std::string> listed() const {
        std::vector<std::string> subjects;
        const ArchiveWork::SharedList entries = model_->entries(); // which may be the only one to hold it
        for (const auto& entry : *entries) subjects.emplace_back(entry->subject.view());
        return subjects;
    }
    std::vector<std::string> openNames() const {
        std::vector<std::string> names;
        for (const auto& collection : *model_->collections)
            names.push_back(collection.url.lastPathComponent());
        return names;
    }
    std::string shownSubject() const { return *model_->message ? (*model_->message)->subject : "nothing"; }
    AppModel::CollectionID idOf(std::size_t position) const { return model_->collections->at(position).id; }

    MailCore::Testing::TemporaryFolder folder_;
    MailCore::Testing::TemporaryFolder settings_;
    Preferences preferences_;
    PreparedPanels panels_;
    PreparedDesktop desktop_;
    std::shared_ptr<AppModel> model_ = AppModel::create(preferences_, panels_, desktop_);
};

} // namespace TesselMail::Testing
