// The window with its web view, under a display.
#include "TesselMail/Views/EntryRows.h"
#include "tests/Application/WindowFixture.h"

#include <gmock/gmock.h>

namespace TesselMail::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST_F(Window, ShowsAMessageAndRunsNothingOfIt) {
    const std::string html =
        "<p>Hello <a href=\"https://tessel.example/\">there</a></p>"
        "<script>document.title = 'ran'</script><img src=x onerror=\"document.title='ran'\">";
    open({folder_.write("a.eml", Mail().subject("a").html(html).string())});
    waitForPage("Hello there");
    const std::string page = evaluate("return document.documentElement.outerHTML + document.title");
    EXPECT_THAT(page, HasSubstr("tessel-link://"));
    EXPECT_THAT(page, Not(HasSubstr("tessel.example")));
    EXPECT_THAT(page, Not(HasSubstr("ran")));
    // Even a script that got into the page would be dead, and could fetch nothing.
    evaluate("const s = document.createElement('script'); s.textContent = \"document.title = 'ran'\"; "
             "document.body.append(s)");
    EXPECT_EQ(evaluate("return document.title"), "");
    EXPECT_EQ(
        evaluate(
            "try { await fetch('https://tessel.example/'); return 'fetched' } catch { return 'blocked' }"),
        "blocked");
    EXPECT_EQ(evaluate("location.href = 'data:text/html,elsewhere'; "
                       "await new Promise(done => setTimeout(done, 200)); return location.href"),
              "about:blank");
    waitForPage("Hello there");
}

TEST_F(Window, ShowsWhereALinkLeadsAndGoesNowhere) {
    open({folder_.write(
        "a.eml",
        Mail().subject("a").html("<p>Hello <a href=\"https://tessel.example/x\">there</a></p>").string())});
    waitForPage("Hello there");
    evaluate("document.links[0].click()");
    waitUntil([this] {
        return popoverText(GTK_WIDGET(window_->gobj())).find("https://tessel.example/x") != std::string::npos;
    });
    EXPECT_EQ(evaluate("return location.href"), "about:blank");
    model_->closeAll();
    EXPECT_EQ(popoverText(GTK_WIDGET(window_->gobj())), "");
}

TEST_F(Window, ShowsTheNextMessageAfterTheWebProcessEnded) {
    open({folder_.write("a.eml", Mail().subject("a").text("First text").string()),
          folder_.write("b.eml", Mail().subject("b").text("Second text").string())});
    waitForPage("First text");
    webkit_web_view_terminate_web_process(webView());
    waitUntil([this] { return model_->error->has_value(); });
    EXPECT_EQ(*model_->error, "The reading view stopped. Try opening the message again.");
    model_->dismissError();
    model_->selectCollection(idOf(1));
    waitForPage("Second text");
    EXPECT_TRUE(model_->currentMessageReady());
}

TEST_F(Window, CopiesWhatAMailLinkCarriesAndForgetsItForTheNext) {
    const auto window = GTK_WIDGET(window_->gobj());
    const auto receive = [this](const char* link) { model_->open({*MailCore::URL::parse(link)}); };
    receive("mailto:ann@tessel.example?subject=Hi");
    GtkButton* const copy = buttonIn(window, "Copy details");
    ASSERT_TRUE(copy);
    g_signal_emit_by_name(copy, "clicked");
    EXPECT_EQ(clipboardText(window), "To: ann@tessel.example\nSubject: Hi");
    EXPECT_EQ(buttonIn(window, "Copied"), copy);
    preferences_.setLanguage("zh-CN");
    EXPECT_EQ(buttonIn(window, "已复制"), copy);
    receive("mailto:ben@tessel.example");
    EXPECT_EQ(buttonIn(window, "复制内容"), copy);
    g_signal_emit_by_name(copy, "clicked");
    EXPECT_EQ(clipboardText(window), "To: ben@tessel.example");
}

TEST_F(Window, LetsGoOfEverythingWhenItCloses) {
    open({folder_.write("a.eml", Mail().subject("a").text("First text").string())});
    waitForPage("First text");
    window_.reset();
    model_->closeAll();
    EXPECT_TRUE(model_->collections->empty());
}

TEST(EntryRowsTests, TellListenersExactlyWhatChanged) {
    const auto entry = [](std::int64_t id) {
        MailCore::MessageEntry value;
        value.id = id;
        return std::make_shared<const MailCore::MessageEntry>(std::move(value));
    };
    std::vector<MailCore::SharedEntry> pool;
    for (std::int64_t id = 0; id < 6; ++id) pool.push_back(entry(id));
    const auto rows = EntryRows::create();
    // A listener that keeps the list as it was told of it.
    std::vector<std::int64_t> kept;
    rows->signal_items_changed().connect([&](guint position, guint removed, guint added) {
        kept.erase(kept.begin() + position, kept.begin() + position + removed);
        for (guint at = position; at < position + added; ++at)
            kept.insert(kept.begin() + at,
                        std::dynamic_pointer_cast<EntryRow>(rows->get_object(at))->entry()->id);
        ASSERT_EQ(kept.size(), rows->get_n_items());
        for (guint at = 0; at < rows->get_n_items(); ++at)
            ASSERT_EQ(std::dynamic_pointer_cast<EntryRow>(rows->get_object(at))->entry()->id, kept[at]);
    });
    const std::vector<std::vector<std::int64_t>> lists = {
        {0}, {0, 1, 2}, {3, 0, 1, 2}, {3, 0, 4, 1, 2}, {2, 1, 0}, {2, 1, 0}, {}, {5, 0, 5}, {5, 1, 5}};
    for (const auto& ids : lists) {
        auto list = std::make_shared<MailCore::EntryList>();
        for (const auto id : ids) list->push_back(pool[static_cast<std::size_t>(id)]);
        rows->show(list);
        EXPECT_EQ(kept, ids);
    }
}

} // namespace
} // namespace TesselMail::Testing

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const MailCore::Testing::TemporaryFolder home;
    for (const char* const folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        g_setenv(folder, home.path(folder).c_str(), TRUE);
    g_setenv("GIO_USE_VFS", "local", TRUE);
    g_set_prgname("tessel-mail"); // without a name nothing gets among the recent files
    const auto application =
        Gtk::Application::create("org.tesselmail.TesselMail.Tests", Gio::Application::Flags::NON_UNIQUE);
    gtk_init();
    adw_init();
    return RUN_ALL_TESTS();
}
