#include "TesselMail/Model/Preferences.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>

namespace TesselMail {
namespace {

using MailCore::Testing::TemporaryFolder;

TEST(PreferencesTests, ChooseTheLanguage) {
    const TemporaryFolder folder;
    struct Case {
        std::string_view name;
        std::string language;
        std::vector<std::string> system;
        bool chinese;
    };
    const Case cases[] = {
        {"mainland China", "auto", {"zh_CN.UTF-8", "en"}, true}, {"Taiwan", "auto", {"zh_TW"}, true},
        {"Britain first", "auto", {"en_GB", "zh_CN"}, false},    {"no languages", "auto", {}, false},
        {"forced English", "en-US", {"zh_CN"}, false},           {"forced Chinese", "zh-CN", {"en"}, true},
        {"an unknown choice", "fr", {"zh_CN"}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Preferences preferences(folder.path("none.ini").string(), c.system);
        preferences.setLanguage(c.language);
        EXPECT_EQ(preferences.chinese(), c.chinese);
    }
}

TEST(PreferencesTests, ReadWhatIsStoredAndForgiveTheRest) {
    struct Case {
        std::string_view name;
        std::string content;
        std::string language;
        std::string appearance;
        double textSize;
    };
    const Case cases[] = {
        {"nothing", "", "auto", "auto", 16},
        {"all", "[Preferences]\nlanguage=en-US\nappearance=dark\ntextSize=18\n", "en-US", "dark", 18},
        {"values nobody offers", "[Preferences]\nlanguage=fr\nappearance=sepia\ntextSize=15.5\n", "fr",
         "sepia", 15.5},
        {"a size that is a word", "[Preferences]\ntextSize=large\n", "auto", "auto", 16},
        {"a size with more after it", "[Preferences]\ntextSize=18pt\n", "auto", "auto", 16},
        {"a size that is no number", "[Preferences]\ntextSize=nan\n", "auto", "auto", 16},
        {"a size without end", "[Preferences]\ntextSize=inf\n", "auto", "auto", 16},
        {"a language that is no text", "[Preferences]\nlanguage=\xFF\xFE\nappearance=light\n", "auto",
         "light", 16},
        {"another group", "[Other]\nlanguage=zh-CN\n", "auto", "auto", 16},
        {"no key file", std::string("\0\x01\x02 not a key file", 18), "auto", "auto", 16},
    };
    const TemporaryFolder folder;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        folder.write("preferences.ini", c.content);
        const std::string path = folder.path("preferences.ini").string();
        Preferences preferences(path, {"en"});
        EXPECT_EQ(preferences.language(), c.language);
        EXPECT_EQ(preferences.appearance(), c.appearance);
        EXPECT_EQ(preferences.textSize(), c.textSize);

        // Whatever was there, the next change is kept.
        preferences.setTextSize(20);
        const Preferences kept(path, {"en"});
        EXPECT_EQ(kept.language(), c.language);
        EXPECT_EQ(kept.appearance(), c.appearance);
        EXPECT_EQ(kept.textSize(), 20);
    }
    EXPECT_EQ(folder.count(), 1U) << "no unfinished file";
}

TEST(PreferencesTests, HoldEvenWhereNothingCanBeWritten) {
    struct Case {
        std::string_view name;
        std::string path;
    };
    const TemporaryFolder folder;
    folder.write("file", "no folder");
    folder.write("folder/preferences.ini/inside", "no file");
    const Case cases[] = {
        {"a file where the folder would be", folder.path("file/preferences.ini").string()},
        {"a folder where the file would be", folder.path("folder/preferences.ini").string()},
        {"a folder nobody may make one in", "/proc/tessel/preferences.ini"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Preferences preferences(c.path, {"en"});
        int changes = 0;
        preferences.signalChanged().connect([&] { ++changes; });
        preferences.setLanguage("zh-CN");
        preferences.setTextSize(20);
        EXPECT_TRUE(preferences.chinese());
        EXPECT_EQ(preferences.readingScale(), 1.25);
        EXPECT_EQ(changes, 2);
    }
}

TEST(PreferencesTests, TellOfRealChangesOnly) {
    const TemporaryFolder folder;
    Preferences preferences(folder.path("preferences.ini").string(), {"en"});
    int changes = 0;
    preferences.signalChanged().connect([&] { ++changes; });
    preferences.setLanguage("auto");
    preferences.setTextSize(16);
    preferences.setTextSize(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(changes, 0);
    preferences.setTextSize(14);
    preferences.setAppearance("light");
    EXPECT_EQ(changes, 2);
}

} // namespace
} // namespace TesselMail
