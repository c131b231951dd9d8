// The desktop's own panels, answered as people do: a file is chosen and the panel's button pressed.
#include "TesselMail/Platform/NativeFilePanels.h"
#include "tests/Application/WindowFixture.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace TesselMail::Testing {
namespace {

using testing::ElementsAre;

class Panels : public ModelTest {
protected:
    Panels() {
        window_.present();
        panels_.attach(&window_);
    }

    /// The panel that is open; null when there is none.
    static GtkWindow* panel() {
        GtkWindow* found = nullptr;
        GListModel* const windows = gtk_window_get_toplevels();
        for (guint at = 0; at < g_list_model_get_n_items(windows); ++at) {
            const auto window = ObjectRef<GtkWidget>::adopt(GTK_WIDGET(g_list_model_get_item(windows, at)));
            if (GTK_IS_FILE_CHOOSER(window.get()) && gtk_widget_get_visible(window.get()))
                found = GTK_WINDOW(window.get());
        }
        return found;
    }
    void choose(const URL& url) {
        waitUntil([] { return panel() != nullptr; });
        const auto file = Gio::File::create_for_path(url.path());
        gtk_file_chooser_set_file(GTK_FILE_CHOOSER(panel()), file->gobj(), nullptr);
        waitUntil([&] {
            const auto chosen = ObjectRef<GFile>::adopt(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(panel())));
            return chosen && g_file_equal(chosen.get(), file->gobj());
        });
    }
    static void press(int response) { gtk_dialog_response(GTK_DIALOG(panel()), response); }

    static Task ask(Later<std::vector<URL>> panel, std::vector<std::string>* answer, int* answers) {
        const std::vector<URL> chosen = co_await std::move(panel);
        for (const URL& url : chosen) answer->push_back(url.lastPathComponent());
        ++*answers;
    }

    Gtk::Window window_;
    NativeFilePanels panels_;
    std::vector<std::string> answer_;
    int answers_ = 0;
};

TEST_F(Panels, GiveTheFileThatWasChosenAndKeepItToThemselves) {
    const URL url = letter("private name.eml", "a");
    ask(panels_.open({.title = "t", .accept = "Open", .cancel = "Cancel", .extensions = {"eml"}}), &answer_,
        &answers_);
    choose(url);
    press(GTK_RESPONSE_ACCEPT);
    waitUntil([this] { return answers_ == 1; });
    EXPECT_THAT(answer_, ElementsAre("private name.eml"));

    // The panel adds it to the list in a while, and the list is written in another.
    GtkRecentManager* const recent = gtk_recent_manager_get_default();
    const std::string uri = Gio::File::create_for_path(url.path())->get_uri();
    waitUntil([&] { // an empty list may not be asked for an item
        GList* const items = gtk_recent_manager_get_items(recent);
        g_list_free_full(items,
                         [](gpointer item) { gtk_recent_info_unref(static_cast<GtkRecentInfo*>(item)); });
        return items && gtk_recent_manager_has_item(recent, uri.c_str());
    });
    g_signal_emit_by_name(recent, "changed");
    EXPECT_FALSE(std::filesystem::exists(Glib::get_user_data_dir() + "/recently-used.xbel"));
}

TEST_F(Panels, AnswerOnceAndAgainTheNextTime) {
    for (const int times : {1, 2}) {
        ask(panels_.open({.title = "t", .accept = "Open", .cancel = "Cancel"}), &answer_, &answers_);
        waitUntil([] { return panel() != nullptr; });
        GtkWindow* const shown = panel();
        press(GTK_RESPONSE_CANCEL);
        if (panel() == shown) press(GTK_RESPONSE_CANCEL); // people press twice
        waitUntil([&] { return answers_ == times; });
    }
    drain();
    EXPECT_EQ(answers_, 2);
    EXPECT_TRUE(answer_.empty());
}

TEST_F(Panels, AreLeftWithTheirWindow) {
    ask(panels_.open({.title = "t", .accept = "Open", .cancel = "Cancel"}), &answer_, &answers_);
    waitUntil([] { return panel() != nullptr; });
    panels_.attach(nullptr);
    waitUntil([this] { return answers_ == 1; });
    EXPECT_EQ(panel(), nullptr);
}

} // namespace
} // namespace TesselMail::Testing
