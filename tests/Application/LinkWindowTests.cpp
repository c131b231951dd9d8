// Links in the page, the panel that shows them, and captured links.
#include "tests/Application/ReadingFixture.h"

namespace TesselMail::Testing {
namespace {

using testing::HasSubstr;

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

} // namespace
} // namespace TesselMail::Testing
