// The message in its window: page, plain text, header, links and captured links.
#include "tests/Application/WindowFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace TesselMail::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Whether `widget` and all around it are shown.
bool isShown(GtkWidget* widget) {
    return gtk_widget_get_mapped(widget) && gtk_widget_get_child_visible(widget);
}

/// Every widget in `widget` that is shown.
void addShown(GtkWidget* widget, std::vector<GtkWidget*>& found) {
    if (!isShown(widget)) return;
    found.push_back(widget);
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        addShown(child, found);
}

std::string textOf(GtkTextView* view) {
    return Glib::wrap(gtk_text_view_get_buffer(view), true)->get_text();
}

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

class ReadingWindow : public Window {
protected:
    std::vector<GtkWidget*> shown() {
        std::vector<GtkWidget*> found;
        addShown(GTK_WIDGET(window_->gobj()), found);
        return found;
    }
    /// The text of the one text view that is shown.
    std::string plainText() {
        for (GtkWidget* const widget : shown())
            if (GTK_IS_TEXT_VIEW(widget)) return textOf(GTK_TEXT_VIEW(widget));
        return {};
    }
    /// All labels that are shown, one a line.
    std::string labels() {
        std::string text;
        for (GtkWidget* const widget : shown())
            if (GTK_IS_LABEL(widget)) text.append(gtk_label_get_text(GTK_LABEL(widget))).append("\n");
        return text;
    }
    /// Those of them that a screen reader speaks by itself.
    std::string liveTexts() {
        std::string text;
        for (GtkWidget* const widget : shown()) {
            const GtkAccessibleRole role = gtk_accessible_get_accessible_role(GTK_ACCESSIBLE(widget));
            if (GTK_IS_LABEL(widget) &&
                (role == GTK_ACCESSIBLE_ROLE_ALERT || role == GTK_ACCESSIBLE_ROLE_STATUS))
                text.append(gtk_label_get_text(GTK_LABEL(widget))).append("\n");
        }
        return text;
    }
    GtkWidget* withTooltip(const std::string& tooltip) {
        for (GtkWidget* const widget : shown()) {
            const char* const text = gtk_widget_get_tooltip_text(widget);
            if (text && text == tooltip) return widget;
        }
        return nullptr;
    }
    std::string pageText() { return evaluate("return document.body.innerText"); }
    std::string linkPanel() { return popoverText(GTK_WIDGET(window_->gobj())); }
    void clickLink(const std::string& address) {
        evaluate("document.links[0].click()");
        waitUntil([&] { return linkPanel().find(address) != std::string::npos; });
    }
    URL html(const std::string& name, const std::string& body) {
        return folder_.write(name, Mail().from("ann@tessel.example").subject(name).html(body).string());
    }
};

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

TEST_F(ReadingWindow, ShowsRefusedLinksAsText) {
    open(
        {html("a.eml", "<p>A <a href='javascript:x()'>refused</a> <a href='https://tessel.example/'>kept</a> "
                       "<a style='color:#ff0000' href='file:///x'>red</a></p>")});
    waitForPage("refused");
    const auto colour = [this](const std::string& selector) {
        return evaluate("return getComputedStyle(document.querySelector('" + selector + "')).color");
    };
    EXPECT_EQ(colour("a:not([href])"), colour("p"));
    EXPECT_NE(colour("a[href]"), colour("p"));
    EXPECT_EQ(colour("a[style]"), "rgb(255, 0, 0)"); // which the message asked for
}

TEST_F(ReadingWindow, KeepsTheLinkPanelUntilAnotherMessageIsSelected) {
    open({html("a.eml", "<p>Hello <a href='https://tessel.example/x'>there</a></p>"),
          html("b.eml", "<p>Second</p>")});
    waitForPage("Hello there");
    clickLink("https://tessel.example/x");
    preferences_.setTextSize(18);
    drain();
    EXPECT_THAT(linkPanel(), HasSubstr("https://tessel.example/x"));
    preferences_.setLanguage("zh-CN");
    EXPECT_THAT(linkPanel(), HasSubstr(Texts::copyLink.chinese));
    model_->selectCollection(idOf(1));
    EXPECT_EQ(linkPanel(), "");
}

TEST_F(ReadingWindow, CopiesFromTheLinkPanelWhatItsButtonSays) {
    const struct {
        std::string address;
        const Phrase& label;
        std::string copied;
    } cases[] = {
        {"https://tessel.example/x", Texts::copyLink, "https://tessel.example/x"},
        {"mailto:ann%40tessel.example", Texts::copyAddress, "ann@tessel.example"},
        {"tel:+44-20%205", Texts::copyNumber, "+44-20 5"},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.address);
        open({html("a.eml", "<p>Hello <a href='" + one.address + "'>there</a></p>")});
        waitForPage("Hello there");
        clickLink(one.copied);
        GtkButton* const copy = buttonIn(GTK_WIDGET(window_->gobj()), std::string(one.label.english));
        ASSERT_TRUE(copy);
        g_signal_emit_by_name(copy, "clicked");
        EXPECT_EQ(clipboardText(GTK_WIDGET(window_->gobj())), one.copied);
        model_->closeAll();
        waitUntil([this] { return pageText().empty(); });
    }
}

// What the web view would offer by itself opens, downloads or reloads.
TEST_F(ReadingWindow, OffersOnlyToCopyWhatIsUnderThePointer) {
    open({html("a.eml", "<p>Hello <a href='https://tessel.example/x'>there</a></p>")});
    waitForPage("Hello there");
    const std::string token = evaluate("return document.links[0].href");
    const struct {
        const char* name;
        guint context;
        std::string link;
        std::vector<WebKitContextMenuAction> items;
    } cases[] = {
        {"text", WEBKIT_HIT_TEST_RESULT_CONTEXT_DOCUMENT, "", {WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}},
        {"a link, which is copied by an action of ours",
         WEBKIT_HIT_TEST_RESULT_CONTEXT_LINK,
         token,
         {WEBKIT_CONTEXT_MENU_ACTION_CUSTOM, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}},
        {"no link of the message",
         WEBKIT_HIT_TEST_RESULT_CONTEXT_LINK,
         "file:///x",
         {WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}},
        {"a selection",
         WEBKIT_HIT_TEST_RESULT_CONTEXT_SELECTION,
         "",
         {WEBKIT_CONTEXT_MENU_ACTION_COPY, WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL}},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const auto hit = ObjectRef<GObject>::adopt(
            G_OBJECT(g_object_new(WEBKIT_TYPE_HIT_TEST_RESULT, "context", one.context, "link-uri",
                                  one.link.empty() ? nullptr : one.link.c_str(), nullptr)));
        const auto menu = ObjectRef<WebKitContextMenu>::retain(webkit_context_menu_new());
        for (const auto action :
             {WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK, WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_LINK_TO_DISK,
              WEBKIT_CONTEXT_MENU_ACTION_RELOAD})
            webkit_context_menu_append(menu.get(), webkit_context_menu_item_new_from_stock_action(action));
        gboolean handled = FALSE;
        g_signal_emit_by_name(webView(), "context-menu", menu.get(), hit.get(), &handled);
        EXPECT_FALSE(handled) << "no menu would be shown";
        std::vector<WebKitContextMenuAction> items;
        for (guint at = 0; at < webkit_context_menu_get_n_items(menu.get()); ++at)
            items.push_back(webkit_context_menu_item_get_stock_action(
                webkit_context_menu_get_item_at_position(menu.get(), at)));
        EXPECT_EQ(items, one.items);

        g_signal_emit_by_name(webView(), "mouse-target-changed", hit.get(), 0U);
        EXPECT_EQ(labels().find("https://tessel.example/x") != std::string::npos, one.link == token);
    }
}

TEST_F(ReadingWindow, WalksThroughTheLinksAndOutOfThePage) {
    open({html("a.eml", "<p><a href='https://tessel.example/1'>one</a> "
                        "<a href='https://tessel.example/2' style='visibility:hidden'>two</a> "
                        "<a href='https://tessel.example/3'>three.com</a></p>")});
    waitForPage("three");
    const auto press = [this](guint key, GdkModifierType modifiers = {}) {
        GListModel* const controllers = gtk_widget_observe_controllers(GTK_WIDGET(webView()));
        gboolean handled = FALSE;
        for (guint at = 0; at < g_list_model_get_n_items(controllers); ++at) {
            const auto controller =
                ObjectRef<GObject>::adopt(static_cast<GObject*>(g_list_model_get_item(controllers, at)));
            if (GTK_IS_EVENT_CONTROLLER_KEY(controller.get()) &&
                gtk_event_controller_get_propagation_phase(GTK_EVENT_CONTROLLER(controller.get())) ==
                    GTK_PHASE_CAPTURE)
                g_signal_emit_by_name(controller.get(), "key-pressed", key, 0, modifiers, &handled);
        }
        g_object_unref(controllers);
        return handled != FALSE;
    };
    const auto focused = [this] { return evaluate("return document.activeElement.innerText"); };
    const auto inPage = [this] { return gtk_widget_has_focus(GTK_WIDGET(webView())) != FALSE; };
    window_->activate_action("win.search"); // some other place
    gtk_widget_grab_focus(GTK_WIDGET(webView()));
    EXPECT_TRUE(press(GDK_KEY_F7)); // or the web view would end the program
    EXPECT_TRUE(press(GDK_KEY_Tab));
    waitUntil([&] { return focused() == "one"; });
    EXPECT_EQ(liveTexts(), "\u2068https://tessel.example/1\u2069\n");
    EXPECT_TRUE(press(GDK_KEY_Tab));
    waitUntil([&] { return focused() == "three.com"; });
    EXPECT_EQ(liveTexts(), "Not the site its text names: \u2068https://tessel.example/3\u2069\n");
    EXPECT_TRUE(inPage());
    EXPECT_TRUE(press(GDK_KEY_Tab));
    waitUntil([&] { return !inPage(); });
    EXPECT_TRUE(window_->get_focus());
    EXPECT_EQ(liveTexts(), "");
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

TEST_F(ReadingWindow, ShowsPartOfALongLinkAndCopiesAllOfIt) {
    const std::string word(60'000, 'x');
    model_->open({*MailCore::URL::parse("mailto:ann@tessel.example?subject=" + word + "&body=" + word)});
    EXPECT_LT(labels().size(), 5'000U);
    EXPECT_THAT(labels(), HasSubstr("xxx…"));
    g_signal_emit_by_name(buttonIn(GTK_WIDGET(window_->gobj()), "Copy details"), "clicked");
    EXPECT_THAT(clipboardText(GTK_WIDGET(window_->gobj())), HasSubstr(word + "\n\n" + word));
}

TEST_F(ReadingWindow, ShowsEveryFieldOfACapturedLinkAndCopiesItAsItCame) {
    const std::string link = "mailto:ann@tessel.example?cc=ben@tessel.example&bcc=cleo%40tessel.example"
                             "&subject=High%20water&body=At%20noon&x=y";
    model_->open({*MailCore::URL::parse(link)});
    EXPECT_THAT(labels(),
                HasSubstr("To\nann@tessel.example\nCc\nben@tessel.example\nBcc\ncleo@tessel.example\n"
                          "Subject\nHigh water\nMessage\nAt noon\n"));
    g_signal_emit_by_name(buttonIn(GTK_WIDGET(window_->gobj()), "Copy original link"), "clicked");
    EXPECT_EQ(clipboardText(GTK_WIDGET(window_->gobj())), link);
}

TEST_F(ReadingWindow, PutsACapturedLinkAway) {
    open({html("a.eml", "<p>First</p>")});
    waitForPage("First");
    for (const Phrase& language : {Phrase{"en", "Close"}, Phrase{"zh-CN", "关闭"}}) {
        preferences_.setLanguage(std::string(language.english));
        model_->open({*MailCore::URL::parse("mailto:ann@tessel.example")});
        GtkWidget* const close = withTooltip(std::string(language.chinese));
        ASSERT_TRUE(close);
        g_signal_emit_by_name(close, "clicked");
        EXPECT_FALSE(model_->capture->has_value());
        settle();
        waitForPage("First");
        EXPECT_TRUE(gtk_widget_has_focus(GTK_WIDGET(webView())));
    }
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
