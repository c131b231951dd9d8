// The message in its window: page, plain text, header and attachments.
#include "tests/Application/ReadingFixture.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace TesselMail::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The web process that `parent` or one of its children started last; 0 when there is none. That of a window
/// before may not have ended yet.
pid_t webProcess(pid_t parent) {
    pid_t last = 0;
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(process.path() / "stat");
        std::string line;
        std::getline(file, line);
        const std::size_t end = line.rfind(')');
        if (end == std::string::npos || std::stol(line.substr(end + 4)) != parent) continue;
        const auto id = static_cast<pid_t>(std::stol(line));
        last = std::max(last, line.find("(WebKitWebProces") != std::string::npos ? id : webProcess(id));
    }
    return last;
}

TEST_F(ReadingWindow, LeavesNothingOfAClosedMessageInThePage) {
    open({html("a.eml", "<p>Private</p>")});
    waitForPage("Private");
    model_->closeAll();
    waitUntil([this] { return pageText().empty(); });
    open({html("b.eml", "<p>Other</p>")});
    waitForPage("Other");
}

TEST_F(ReadingWindow, ShowsAMessageAsPlainTextAndBack) {
    open({html("a.eml", "<p>One</p><ul><li>two</ul>"),
          folder_.write("b.eml", Mail().subject("b").text(std::string("be\0fore", 7)).string())});
    waitForPage("One");
    window_->activate_action("win.plain-text");
    EXPECT_EQ(plainText(), "One\n\n• two");
    waitUntil([this] { return pageText().empty(); });
    model_->selectCollection(idOf(1));
    settle();
    EXPECT_THAT(plainText(), HasSubstr("before"));
    model_->closeAll();
    EXPECT_EQ(plainText(), "");
    open({html("c.eml", "<p>Three</p>")});
    EXPECT_EQ(plainText(), "Three");
    window_->activate_action("win.plain-text");
    waitForPage("Three");
    EXPECT_EQ(plainText(), "");
}

TEST_F(ReadingWindow, ShowsTextsInTheSizeThatIsSetAndWithoutNULs) {
    open({folder_.write("a.eml", Mail().subject("a").text(std::string("be\0fore", 7)).string())});
    waitForPage("before");
    preferences_.setTextSize(20);
    waitUntil([this] { return evaluate("return document.body.style.fontSize") == "20px"; });
    window_->activate_action("win.plain-text");
    const auto pixels = [this] {
        for (GtkWidget* const widget : shown())
            if (GTK_IS_TEXT_VIEW(widget))
                return pango_font_description_get_size(
                           pango_context_get_font_description(gtk_widget_get_pango_context(widget))) /
                       PANGO_SCALE;
        return 0;
    };
    EXPECT_EQ(plainText(), "before");
    waitUntil([&] { return pixels() == 20; });
}

// A page of fixed width is not cut where the window is narrower: people scroll to the rest of it.
TEST_F(ReadingWindow, ScrollsToWhatIsWiderThanTheWindow) {
    window_.reset();
    state_.width = 360;
    state_.height = 640;
    window_ = std::make_unique<MainWindow>(*model_, state_);
    window_->present();
    open({html("a.eml", "<table width=600 style='width:600px'><tr><td width=400>first<td width=200 "
                        "align=right><b>last</b></table>")});
    waitForPage("last");
    waitUntil([this] { return std::stoi(evaluate("return innerWidth")) < 360; });
    const auto lastIsSeen = [this] {
        return evaluate("const place = document.querySelector('b').getBoundingClientRect();"
                        "return place.width > 0 && place.left >= 0 && place.right <= innerWidth");
    };
    EXPECT_EQ(lastIsSeen(), "false");
    EXPECT_EQ(evaluate("const page = document.scrollingElement; return page.scrollWidth >= 600 && "
                       "page.scrollWidth > page.clientWidth"),
              "true");
    // What is hidden could still be scrolled to by a script, and by nobody else.
    EXPECT_EQ(evaluate("for (let at = document.querySelector('b'); at; at = at.parentElement)"
                       "  if (/hidden|clip/.test(getComputedStyle(at).overflowX)) return at.tagName;"
                       "return 'none'"),
              "none");
    evaluate("document.scrollingElement.scrollLeft = 10000");
    EXPECT_EQ(lastIsSeen(), "true");
}

TEST_F(ReadingWindow, GivesUpOnAPageThatDoesNotAnswer) {
    open({html("a.eml", "<p>First</p>"), html("b.eml", "<p>Second</p>"), html("c.eml", "<p>Third</p>")});
    waitForPage("First");
    const pid_t process = webProcess(getpid());
    ASSERT_NE(process, 0);
    kill(process, SIGSTOP);
    model_->selectCollection(idOf(1));
    // The page cannot let go of the first message, so nothing may stand above it that is of another.
    waitUntil([this] {
        const bool visible = isShown(GTK_WIDGET(webView())) && window_->get_visible() &&
                             gtk_widget_get_opacity(gtk_widget_get_parent(GTK_WIDGET(webView()))) > 0;
        const bool header = labels().find("\nb.eml\nFrom") != std::string::npos;
        EXPECT_FALSE(visible && header);
        return plainText() == "Second";
    });
    EXPECT_THAT(labels(), HasSubstr("\nb.eml\nFrom"));
    EXPECT_THAT(labels(), HasSubstr(Texts::plainWithoutAnswer.english));
    model_->selectCollection(idOf(2));
    waitForPage("Third"); // in a process of its own
    EXPECT_EQ(plainText(), "");
    EXPECT_FALSE(model_->error->has_value());
}

TEST_F(ReadingWindow, AddsNothingToWhatPeopleCopy) {
    const std::string subject = "Subject \u05D0\u05D1";
    open({folder_.write(
        "a.eml", Mail().from("Ann \u202Eann@tessel.example").subject(subject).text("Hello").string())});
    waitForPage("Hello");
    const auto selectable = [this] {
        std::string text;
        for (GtkWidget* const widget : shown())
            if (GTK_IS_LABEL(widget) && gtk_label_get_selectable(GTK_LABEL(widget)))
                text.append(gtk_label_get_text(GTK_LABEL(widget))).append("\n");
        return text;
    };
    EXPECT_THAT(selectable(), HasSubstr(subject + "\nAnn ann@tessel.example\n"));
    model_->setShowDetails(true);
    drain();
    EXPECT_THAT(plainText(), HasSubstr("From: Ann ann@tessel.example"));
    EXPECT_THAT(plainText(), Not(HasSubstr("\u2068")));
    model_->open({*MailCore::URL::parse("mailto:ann@tessel.example?subject=%D7%90")});
    EXPECT_THAT(selectable(), HasSubstr("ann@tessel.example\n\u05D0\n"));
}

TEST_F(ReadingWindow, TellsWhoWroteToWhom) {
    open({folder_.write("a.eml", Mail()
                                     .from("Ann <ann@tessel.example>")
                                     .to("Ben <ben@tessel.example>")
                                     .cc("Cleo <cleo@tessel.example>")
                                     .subject("Tide")
                                     .text("Hello")
                                     .string()),
          folder_.write("b.eml", Mail().from("Dora").subject("No others").text("Hello again").string())});
    waitForPage("Hello");
    EXPECT_THAT(labels(), HasSubstr("Tide\nFrom\nAnn <ann@tessel.example>\nTo\nBen <ben@tessel.example>\nCc\n"
                                    "Cleo <cleo@tessel.example>\n"));
    model_->selectCollection(idOf(1));
    waitForPage("Hello again");
    EXPECT_THAT(labels(), HasSubstr("No others\nFrom\nDora\n"));
    EXPECT_THAT(labels(), Not(HasSubstr("\nTo\n")));
    EXPECT_THAT(labels(), Not(HasSubstr("\nCc\n")));
}

TEST_F(ReadingWindow, ReadsAnAttachedMessageThatIsOpenAlready) {
    const std::string inner = Mail().subject("Inner").text("Inside").string();
    open({folder_.write("a.eml", Mail()
                                     .subject("Outer")
                                     .part(Mail().text("Outside"))
                                     .part(Mail().type("message/rfc822").text(inner))
                                     .string())});
    waitForPage("Outside");
    for (int time = 0; time < 2; ++time) {
        GtkButton* button = nullptr;
        for (GtkWidget* const widget : shown())
            if (GTK_IS_BUTTON(widget) && gtk_widget_has_css_class(widget, "attachment"))
                button = GTK_BUTTON(widget);
        ASSERT_TRUE(button);
        g_signal_emit_by_name(button, "clicked");
        EXPECT_EQ(gtk_widget_get_root(GTK_WIDGET(button)), GTK_ROOT(window_->gobj())); // still in its signal
        waitForPage("Inside");
        model_->selectCollection(idOf(0));
        waitForPage("Outside");
    }
    EXPECT_EQ(model_->collections->size(), 2U);
}

TEST_F(ReadingWindow, SavesAFileAndReadsAMessageByTheirOwnButtons) {
    const std::string inner = Mail().subject("Inner").text("Inside").string();
    panels_.destination = URL::file(folder_.path("saved.txt").string());
    open({folder_.write("a.eml", Mail()
                                     .subject("Outer")
                                     .part(Mail().text("Outside"))
                                     .part(Mail().file("tide.txt", "text/plain", "High water"))
                                     .part(Mail().type("message/rfc822").text(inner))
                                     .string())});
    waitForPage("Outside");
    const auto buttons = [this] {
        std::vector<GtkWidget*> found;
        for (GtkWidget* const widget : shown())
            if (GTK_IS_BUTTON(widget) && gtk_widget_has_css_class(widget, "attachment"))
                found.push_back(widget);
        return found;
    };
    ASSERT_EQ(buttons().size(), 2U);
    g_signal_emit_by_name(buttons()[0], "clicked");
    const auto button = [this] { return buttonIn(GTK_WIDGET(window_->gobj()), "Show in folder"); };
    waitUntil([&] { return button() != nullptr; });
    EXPECT_TRUE(std::filesystem::exists(folder_.path("saved.txt")));
    EXPECT_THAT(liveTexts(), HasSubstr("Saved\n"));
    EXPECT_EQ(panels_.proposedNames, std::vector<std::string>{"tide.txt"});
    desktop_.hasFileManager = false;
    g_signal_emit_by_name(button(), "clicked");
    EXPECT_EQ(desktop_.shownInFolder, std::vector<URL>{*panels_.destination});
    waitUntil([this] { return liveTexts().find("Saved as \u2068/") != std::string::npos; });
    EXPECT_EQ(model_->collections->size(), 1U);
    g_signal_emit_by_name(buttons()[1], "clicked");
    waitForPage("Inside");
    EXPECT_EQ(panels_.proposedNames.size(), 1U);
}

TEST_F(ReadingWindow, OffersNothingOfAnAttachmentThatIsBroken) {
    open({folder_.write("a.eml", Mail()
                                     .subject("Outer")
                                     .part(Mail().text("Outside"))
                                     .part(Mail().file("whole.txt", "text/plain", "High water"))
                                     .part(Mail().file("broken.txt", "text/plain", "").body("A"))
                                     .string())});
    waitForPage("Outside");
    std::vector<bool> sensitive;
    for (GtkWidget* const widget : shown())
        if (GTK_IS_BUTTON(widget) && gtk_widget_has_css_class(widget, "attachment"))
            sensitive.push_back(gtk_widget_is_sensitive(widget) != FALSE);
    EXPECT_EQ(sensitive, (std::vector<bool>{true, false}));
    EXPECT_THAT(labels(), HasSubstr(Texts::unavailable.english));
}

// What is dropped is opened, all of it; a link that is dragged along is none.
TEST_F(ReadingWindow, OpensEveryFileOfADrop) {
    GtkDropTarget* target = nullptr;
    const auto controllers =
        ObjectRef<GListModel>::adopt(gtk_widget_observe_controllers(GTK_WIDGET(window_->gobj())));
    for (guint at = 0; at < g_list_model_get_n_items(controllers.get()); ++at) {
        const auto controller =
            ObjectRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), at)));
        if (GTK_IS_DROP_TARGET(controller.get())) target = GTK_DROP_TARGET(controller.get());
    }
    ASSERT_TRUE(target);
    const auto drop = [&](const std::vector<std::string>& addresses) {
        GSList* files = nullptr;
        for (const std::string& address : addresses)
            files = g_slist_append(files, g_file_new_for_commandline_arg(address.c_str()));
        Glib::ValueBase value;
        value.init(GDK_TYPE_FILE_LIST);
        g_value_take_boxed(value.gobj(), gdk_file_list_new_from_list(files));
        g_slist_free_full(files, g_object_unref);
        gboolean taken = FALSE;
        g_signal_emit_by_name(target, "drop", value.gobj(), 1.0, 1.0, &taken);
        return taken != FALSE;
    };
    EXPECT_FALSE(drop({"https://tessel.example/"}));
    EXPECT_TRUE(drop({letter("a.eml", "a").path(), "https://tessel.example/", letter("b.eml", "b").path()}));
    settle();
    EXPECT_EQ(openNames(), (std::vector<std::string>{"a.eml", "b.eml"}));
    EXPECT_TRUE(drop(std::vector<std::string>(22, folder_.path("a.eml").string())));
    settle();
    EXPECT_EQ(*model_->error, "2 files were not opened: at most 20 are opened at a time.");
}

// Started with a file, the window comes while that is being opened: with its panes.
TEST_F(ReadingWindow, TellsOfWhatItWasStartedWith) {
    window_.reset();
    model_->open({folder_.write("long.mbox", mailbox(std::vector<std::string>(20'000, "Tides")))});
    ASSERT_TRUE(*model_->busy);
    window_ = std::make_unique<MainWindow>(*model_, state_);
    window_->present();
    waitUntil([this] { return isShown(GTK_WIDGET(window_->gobj())); });
    EXPECT_THAT(labels(), Not(HasSubstr(Texts::welcomeLine.english)));
    settle();
    model_->closeAll();
    waitUntil([this] { return labels().find(Texts::welcomeLine.english) != std::string::npos; });
}

/// The same where no sandbox is needed, because none is to be found.
class PlainWindow : public ReadingWindow {
protected:
    void SetUp() override {}
};

TEST_F(PlainWindow, SaysWhyThereIsOnlyPlainText) {
    window_.reset();
    const std::string path = g_getenv("PATH");
    g_setenv("PATH", "/nowhere", TRUE); // where no sandbox is to be found
    window_ = std::make_unique<MainWindow>(*model_, state_);
    g_setenv("PATH", path.c_str(), TRUE);
    window_->present();
    open({html("a.eml", "<p>One<br>two</p>")});
    waitUntil([this] { return plainText() == "One\ntwo"; });
    EXPECT_THAT(labels(), HasSubstr(Texts::plainWithoutSandbox.english));
    preferences_.setLanguage("zh-CN");
    EXPECT_THAT(labels(), HasSubstr(Texts::plainWithoutSandbox.chinese));
    EXPECT_FALSE(webView());
}

} // namespace
} // namespace TesselMail::Testing
