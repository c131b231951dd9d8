#include "TesselMail/Model/WindowState.h"
#include "tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace TesselMail::Testing {
namespace {

TEST(WindowStateTests, KeepsWhatPeopleLeft) {
    const MailCore::Testing::TemporaryFolder folder;
    const std::string path = (folder.path("new folder") / "window.ini").string();
    {
        WindowState state(path);
        state.width = 900;
        state.maximized = true;
        state.listWidth = 401.6;
        state.newestFirst = false;
        state.store();
    }
    const WindowState state(path);
    EXPECT_EQ(state.width, 900);
    EXPECT_TRUE(state.maximized);
    EXPECT_EQ(state.listWidth, 402);
    EXPECT_FALSE(state.newestFirst);
}

TEST(WindowStateTests, TakesNoNonsense) {
    const MailCore::Testing::TemporaryFolder folder;
    const WindowState usual((folder.path("none.ini")).string());
    for (const char* const text :
         {"", "[Window]\nwidth=-5\nheight=9999999999999\nlistWidth=0\nsidebarWidth=wide\nnewestFirst=maybe\n",
          "[Window\nwidth=300", "\xFF\xFE\x00"}) {
        SCOPED_TRACE(text);
        folder.write("window.ini", text);
        const WindowState state(folder.path("window.ini").string());
        EXPECT_EQ(state.width, usual.width);
        EXPECT_EQ(state.height, usual.height);
        EXPECT_EQ(state.sidebarWidth, usual.sidebarWidth);
        EXPECT_FALSE(state.listWidth);
        EXPECT_TRUE(state.newestFirst);
    }
    WindowState("/proc/nowhere/window.ini").store(); // no error
}

} // namespace
} // namespace TesselMail::Testing
