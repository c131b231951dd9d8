// Closing, quitting and full disks while work is under way: nothing of it is left behind.
#include "tests/Application/ModelFixture.h"

#include <sys/mount.h>

namespace TesselMail::Testing {
namespace {

class Leaving : public ModelTest {
protected:
    /// Something that runs in the background and touches the first collection.
    struct Work {
        std::string_view name;
        std::function<void(Leaving&)> begin;
    };
    static std::vector<Work> works() {
        return {
            {"indexing",
             [](Leaving& test) {
                 test.model_->open({test.big_});
                 test.waitUntil([&] { return !test.model_->collections->empty(); });
             }},
            {"reading",
             [](Leaving& test) {
                 test.open({test.big_});
                 test.model_->select(1);
             }},
            {"searching",
             [](Leaving& test) {
                 test.open({test.big_});
                 test.model_->setQuery("no such text");
                 test.waitUntil([&] { return *test.model_->searching; });
             }},
            {"searching for a while",
             [](Leaving& test) {
                 test.open({test.big_});
                 test.model_->setQuery("no such text");
                 test.turnFor(220);
             }},
            {"exporting",
             [](Leaving& test) {
                 test.open({test.big_});
                 test.panels_.destination = test.folder_.url("exported.eml");
                 test.model_->exportOriginal();
             }},
        };
    }

    void turnFor(int milliseconds) {
        const gint64 end = g_get_monotonic_time() + milliseconds * 1'000;
        while (g_get_monotonic_time() < end)
            if (!g_main_context_iteration(nullptr, FALSE)) g_usleep(500);
    }

    const URL big_ = folder_.write("big.mbox", mailbox(std::vector<std::string>(5'000, "one of many")));
};

TEST_F(Leaving, ByClosingLeavesNothingBehind) {
    for (const Work& work : works()) {
        SCOPED_TRACE(work.name);
        work.begin(*this);
        model_->closeCollection(idOf(0));
        EXPECT_TRUE(model_->collections->empty());
        EXPECT_FALSE(*model_->selectedCollection);
        EXPECT_FALSE(*model_->busy);
        EXPECT_FALSE(*model_->searching);
        turnFor(100);
        EXPECT_TRUE(model_->collections->empty());
        EXPECT_TRUE(listed().empty());
        EXPECT_EQ(shownSubject(), "nothing");
        EXPECT_FALSE(*model_->reading);
        EXPECT_FALSE(*model_->error) << **model_->error;
    }
}

TEST_F(Leaving, ByQuittingEndsInPeace) {
    for (const Work& work : works()) {
        SCOPED_TRACE(work.name);
        work.begin(*this);
        model_->closeAll();
        model_ = AppModel::create(preferences_, panels_, desktop_);
        turnFor(50);
        EXPECT_FALSE(*model_->error);
    }
}

TEST_F(Leaving, ForAnotherFileKeepsOnlyTheOtherSelected) {
    for (const Work& work : works()) {
        SCOPED_TRACE(work.name);
        work.begin(*this);
        model_->open({letter("small.eml", "small")});
        waitUntil([this] { return shownSubject() == "small" && model_->currentMessageReady(); });
        waitUntil([this] { return listed() == std::vector<std::string>{"small"}; });
        EXPECT_FALSE(*model_->error) << **model_->error;
        model_->closeAll();
    }
}

/// A file system of 128 KiB.
class SmallDisk {
public:
    explicit SmallDisk(const std::string& path)
        : path_(path), mounted_(::mount("tmpfs", path.c_str(), "tmpfs", 0, "size=128k") == 0) {}
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        if (mounted_) ::umount2(path_.c_str(), MNT_DETACH);
    }
    bool isMounted() const noexcept { return mounted_; }

private:
    std::string path_;
    bool mounted_;
};

TEST_F(Leaving, AFullDiskAsItWas) {
    MailCore::Testing::TemporaryFolder place;
    const SmallDisk disk(place.path().string());
    if (!disk.isMounted()) GTEST_SKIP() << "no file system can be mounted here";
    place.write("kept.bin", "what was there before");
    open({folder_.write("parcel.eml",
                        Mail()
                            .subject("parcel")
                            .part(Mail().text("See below"))
                            .part(Mail().file("large.bin", "application/x-data", std::string(400'000, 'x')))
                            .string())});
    waitUntil([this] { return model_->currentMessageReady(); });
    const auto saving = [this] { model_->saveAttachment((*model_->message)->attachments.at(0).id); };
    const auto exporting = [this] { model_->exportOriginal(); };
    for (const auto& [name, write] : {std::pair<const char*, std::function<void()>>("an attachment", saving),
                                      {"an original", exporting}}) {
        SCOPED_TRACE(name);
        panels_.destination = place.url("kept.bin");
        write();
        waitUntil([this] { return model_->error->has_value(); });
        EXPECT_EQ(**model_->error, "The disk is full. Free some space and try again.");
        EXPECT_EQ(place.read("kept.bin"), "what was there before");
        EXPECT_EQ(place.count(), 1U) << "something was left behind";
        model_->dismissError();
    }
}

} // namespace
} // namespace TesselMail::Testing
