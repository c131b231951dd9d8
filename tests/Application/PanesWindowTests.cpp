// The panes of the window: how wide they are and where the keyboard goes.
#include "TesselMail/Views/Shortcuts.h"
#include "tests/Application/WindowFixture.h"

namespace TesselMail::Testing {
namespace {

// The binding makes types of its own of the toolkit's.
bool isA(const Gtk::Widget& widget, const std::string& type) {
    return g_type_is_a(G_OBJECT_TYPE(widget.gobj()), g_type_from_name(type.c_str())) != FALSE;
}

Gtk::Widget* find(Gtk::Widget& widget, const std::string& type) {
    if (isA(widget, type)) return &widget;
    for (Gtk::Widget* child = widget.get_first_child(); child; child = child->get_next_sibling())
        if (Gtk::Widget* const found = find(*child, type)) return found;
    return nullptr;
}

class Panes : public Window {
protected:
    /// How wide the pane is that holds the list.
    int listWidth() const { return find(*window_, "GtkListView")->get_width(); }
    bool focusIn(const char* type) const {
        for (const Gtk::Widget* at = window_->get_focus(); at; at = at->get_parent())
            if (isA(*at, type)) return true;
        return false;
    }
    void act(const std::string& action) { window_->activate_action("win." + action); }
};

TEST_F(Panes, StayAsWideAsTheyAre) {
    open({letter("a.eml", "a")});
    waitUntil([this] { return listWidth() > 0; });
    const int before = listWidth();
    open({letter(std::string(200, 'n') + ".eml", std::string(300, 's'))});
    model_->open({*URL::parse("mailto:a@tessel.example?subject=" + std::string(3'000, 's'))});
    model_->closeCapture();
    settle();
    waitUntil([this] { return model_->currentMessageReady(); });
    for (int turn = 0; turn < 30; ++turn) {
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(5'000);
    }
    EXPECT_EQ(listWidth(), before);
}

TEST_F(Panes, AreWalkedByKey) {
    open({letter("a.eml", "a"), folder_.write("b.mbox", mailbox({"one", "two", "three"}))});
    waitForPage("Hello");
    model_->selectCollection(idOf(1));
    settle();
    for (const auto& [action, subject] : {std::pair{"previous-message", "two"},
                                          {"previous-message", "three"},
                                          {"previous-message", "three"},
                                          {"next-message", "two"},
                                          {"next-message", "one"},
                                          {"next-message", "one"}}) {
        act(action);
        settle();
        EXPECT_EQ(shownSubject(), subject) << "the list begins with the newest, which is the third";
    }

    act("search");
    waitUntil([this] { return focusIn("GtkSearchEntry"); });
    act("next-pane");
    waitUntil([this] { return focusIn("WebKitWebView"); });
    act("next-pane");
    waitUntil([this] { return focusIn("GtkListBox"); });
    act("next-pane");
    waitUntil([this] { return focusIn("GtkListView"); });
    act("previous-pane");
    waitUntil([this] { return focusIn("GtkListBox"); });
}

// Where one pane fills the window, one after the other is shown on the way back.
TEST_F(Panes, AreWalkedBackWhereTheyAreFolded) {
    window_.reset();
    state_.width = 400;
    window_ = std::make_unique<MainWindow>(*model_, state_);
    window_->present();
    open({letter("a.eml", "a")});
    waitForPage("Hello");
    act("back");
    waitUntil([this] { return focusIn("GtkListView"); });
    act("back");
    waitUntil([this] { return focusIn("GtkListBox"); });
}

TEST_F(Panes, ChangeTheirWidthByKey) {
    open({folder_.write("b.mbox", mailbox({"one", "two", "three"}))});
    waitForPage("Hello");
    const int before = listWidth();
    act("search");
    act("widen-pane");
    act("widen-pane");
    waitUntil([&] { return listWidth() > before; });
    const int wide = listWidth();
    act("next-pane"); // the message takes from the list
    act("widen-pane");
    waitUntil([&] { return listWidth() < wide; });
    EXPECT_GT(listWidth(), before);
    for (int time = 0; time < 100; ++time) act("narrow-pane");
    waitUntil([&] { return listWidth() > wide; });
    const auto kept = state_.listWidth;
    ASSERT_TRUE(kept);
    EXPECT_LE(*kept, 640) << "room is left for the text";
}

// With the desktop's largest text a pane grows, and its buttons stay within it.
TEST_F(Panes, CutNothingOffWhereTextIsLarge) {
    struct LargeText {
        LargeText() { g_object_set(gtk_settings_get_default(), "gtk-xft-dpi", 192 * PANGO_SCALE, nullptr); }
        ~LargeText() { gtk_settings_reset_property(gtk_settings_get_default(), "gtk-xft-dpi"); }
    };
    const LargeText large;
    open({folder_.write("b.mbox", mailbox({"one", "two"}))});
    waitForPage("Hello");
    GtkWidget* const open =
        GTK_WIDGET(buttonIn(GTK_WIDGET(window_->gobj()), std::string(Texts::openFiles.english)));
    ASSERT_NE(open, nullptr);
    GtkWidget* const settings = gtk_widget_get_next_sibling(open);
    GtkWidget* pane = settings;
    while (gtk_widget_get_overflow(pane) != GTK_OVERFLOW_HIDDEN ||
           !GTK_IS_BOX(gtk_widget_get_first_child(pane)))
        pane = gtk_widget_get_parent(pane);
    waitUntil([&] {
        graphene_rect_t place;
        return gtk_widget_compute_bounds(settings, pane, &place) && place.size.width > 0 &&
               place.origin.x + place.size.width <= static_cast<float>(gtk_widget_get_width(pane));
    });
}

// A command that nobody has added would be listed and do nothing.
TEST_F(Panes, HaveEveryCommandThatIsGivenAKey) {
    for (const Shortcut& shortcut : shortcuts) {
        const std::string name = shortcut.action.path;
        EXPECT_TRUE(!name.starts_with("win.") || window_->lookup_action(shortcut.action.name())) << name;
        EXPECT_TRUE(gtk_accelerator_parse(shortcut.key, nullptr, nullptr)) << name << ": " << shortcut.key;
    }
}

} // namespace
} // namespace TesselMail::Testing
