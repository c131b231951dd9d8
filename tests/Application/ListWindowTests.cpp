// The panes beside the message: what they list, and how people get about in them.
#include "MailCore/Dates/BriefDate.h"
#include "MailCore/Model/Limits.h"
#include "TesselMail/Views/MessageRow.h"
#include "TesselMail/Views/SystemLocale.h"
#include "tests/Application/WindowFixture.h"

#include <algorithm>
#include <filesystem>

namespace TesselMail::Testing {
namespace {

class ListWindow : public ModelTest {
protected:
    ListWindow() { window_->present(); }
    ~ListWindow() override { window_.reset(); }

    /// What has the focus, and what a press of Tab gives it to.
    GtkWidget* focus() const { return gtk_window_get_focus(GTK_WINDOW(root())); }
    bool focusIn(GtkWidget* widget) const { return focus() && gtk_widget_is_ancestor(focus(), widget); }
    void tab(GtkDirectionType direction) { gtk_widget_child_focus(root(), direction); }
    GtkWidget* sources() const {
        return find(root(), [](GtkWidget* widget) {
            return GTK_IS_LIST_BOX(widget) && gtk_widget_get_mapped(widget);
        });
    }

    GtkWidget* root() const { return GTK_WIDGET(window_->gobj()); }

    template <typename Holds>
    static GtkWidget* find(GtkWidget* widget, const Holds& holds) {
        if (holds(widget)) return widget;
        for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
             child = gtk_widget_get_next_sibling(child))
            if (GtkWidget* const found = find(child, holds)) return found;
        return nullptr;
    }
    /// A label that people see, reading exactly `text`.
    static GtkWidget* labelIn(GtkWidget* widget, const std::string& text) {
        return find(widget, [&](GtkWidget* each) {
            return GTK_IS_LABEL(each) && gtk_widget_get_mapped(each) &&
                   text == gtk_label_get_text(GTK_LABEL(each));
        });
    }
    GtkWidget* list() const {
        return find(root(), [](GtkWidget* widget) { return GTK_IS_LIST_VIEW(widget) != FALSE; });
    }
    static const MessageRow* rowIn(GtkWidget* widget) {
        GtkWidget* const row = find(
            widget, [](GtkWidget* each) { return gtk_widget_has_css_class(each, "message-row") != FALSE; });
        return row ? dynamic_cast<MessageRow*>(Glib::wrap(row)) : nullptr;
    }
    /// The subjects of the rows that people see.
    std::vector<std::string> rowsInView() const {
        std::vector<std::string> rows;
        const double height = gtk_widget_get_height(list());
        for (GtkWidget* row = gtk_widget_get_first_child(list()); row;
             row = gtk_widget_get_next_sibling(row)) {
            graphene_rect_t place;
            if (!gtk_widget_get_mapped(row) || !gtk_widget_get_child_visible(row) ||
                !gtk_widget_compute_bounds(row, list(), &place) || place.size.height < 10 ||
                place.origin.y + place.size.height <= 0 || place.origin.y >= height)
                continue;
            const MessageRow* const shown = rowIn(row);
            rows.push_back(shown ? shown->shownSubject() : "");
        }
        return rows;
    }
    bool inView(const std::string& subject) const {
        return std::ranges::any_of(rowsInView(),
                                   [&](const std::string& row) { return row.find(subject) != row.npos; });
    }
    /// Archives of `count` messages a day apart, oldest first, so that the first one is the last of the list.
    URL archive(const std::string& name, int count) const {
        std::string content;
        for (int at = 0; at < count; ++at) {
            const std::string date = std::to_string(at % 28 + 1) + " Jan " + std::to_string(1990 + at / 28);
            content += "From sender@tessel.example Mon Jan  1 10:00:00 2024\n";
            content += Mail()
                           .from("sender@tessel.example")
                           .subject("number " + std::to_string(at) + ".")
                           .date(date + " 10:00:00 +0000")
                           .lineEnd("\n")
                           .text("Hello\n")
                           .string();
            content += "\n";
        }
        return folder_.write(name, content);
    }

    WindowState state_{settings_.path("window.ini").string()};
    std::unique_ptr<MainWindow> window_ = std::make_unique<MainWindow>(*model_, state_);
};

// The list is asked for its selected row while it has no size yet, and again in another order.
TEST_F(ListWindow, ShowsTheSelectedRowOfAnArchiveHoweverItIsOrdered) {
    open({archive("long.mbox", 900)});
    waitUntil([this] { return inView("number 0."); });
    EXPECT_FALSE(inView("number 899."));
    model_->setNewestFirst(false);
    waitUntil([this] { return inView("number 0.") && inView("number 1."); });
    model_->select(500);
    waitUntil([this] { return inView("number 500."); });
    model_->setNewestFirst(true);
    waitUntil([this] { return (*model_->filteredEntries)->front()->id == 899; });
    waitUntil([this] { return inView("number 500."); });

    open({archive("another.mbox", 300)});
    waitUntil([this] { return inView("number 0."); });
    model_->selectCollection(idOf(0));
    waitUntil([this] { return inView("number 500."); });
}

TEST_F(ListWindow, IsOrderedByItsButton) {
    open({archive("three.mbox", 3)});
    waitUntil([this] { return inView("number 0."); });
    GtkWidget* const button = find(root(), [](GtkWidget* widget) {
        const char* const icon =
            GTK_IS_TOGGLE_BUTTON(widget) ? gtk_button_get_icon_name(GTK_BUTTON(widget)) : nullptr;
        return icon && std::string_view(icon) == "view-sort-descending-symbolic";
    });
    ASSERT_TRUE(button);
    const auto active = [&] { return gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(button)) != FALSE; };
    EXPECT_TRUE(active());
    g_signal_emit_by_name(button, "clicked");
    EXPECT_FALSE(active());
    waitUntil([this] { return listed().front() == "number 0."; });
    model_->setNewestFirst(true);
    EXPECT_TRUE(active());
}

// A list in the making is no answer: neither while typing pauses nor when the text is taken back.
TEST_F(ListWindow, SaysThatThereIsNothingOnlyWhenThatIsKnown) {
    open({archive("long.mbox", 300)});
    const auto reads = [this](const char* text) { return labelIn(root(), text) != nullptr; };
    model_->setQuery("nowhere");
    EXPECT_FALSE(reads("No messages"));
    waitUntil([&] { return reads("No messages"); });
    EXPECT_TRUE(reads("\u2068nowhere\u2069"));
    model_->setQuery("<i>&lt;");
    waitUntil([&] { return reads("\u2068<i>&lt;\u2069"); });
    model_->setQuery("");
    EXPECT_FALSE(reads("No messages"));
    waitUntil([this] { return inView("number 0."); });

    EXPECT_FALSE(reads("The message shown is not among the results."));
    model_->setQuery("number 29");
    waitUntil([this] { return inView("number 299."); });
    waitUntil([&] { return reads("11 messages\nThe message shown is not among the results."); });
    model_->select(29);
    waitUntil([&] { return reads("11 messages"); });
    model_->setQuery("");
    waitUntil([this] { return inView("number 29."); });
}

// A list that lacks messages says so, and why, for as long as it is shown.
TEST_F(ListWindow, SaysWhyMessagesAreMissing) {
    const auto reads = [this](const Phrase& text) {
        return labelIn(root(), preferences_.text(text)) != nullptr;
    };
    std::string content;
    for (std::int64_t count = 0; count <= MailCore::Limits::messages; ++count)
        content += "From x Mon Jan  1 10:00:00 2024\nSubject: s\n\n";
    open({folder_.write("full.mbox", content)});
    waitUntil([&] { return reads(Texts::limitReached); });
    preferences_.setLanguage("zh-CN");
    waitUntil([&] { return reads(Texts::limitReached); });
    preferences_.setLanguage("en-US");
    model_->closeAll();

    model_->open({archive("stopped.mbox", 20'000)});
    waitUntil([this] { return !model_->collections->empty(); });
    EXPECT_FALSE(reads(Texts::interrupted));
    model_->cancel();
    waitUntil([&] { return reads(Texts::interrupted); });

    folder_.write("Mail/cur/1", Mail().subject("one").text("Hello").string());
    folder_.write("Mail/cur/2", Mail().subject("two").text("Hello").string());
    open({folder_.url("Mail")});
    waitUntil([&] { return !reads(Texts::interrupted); });
    std::filesystem::remove(folder_.path("Mail/cur/2"));
    model_->setQuery("Hello");
    const std::string unread = "1" + std::string(Texts::unreadable.english);
    waitUntil([&] { return labelIn(root(), unread) != nullptr; });
    model_->selectCollection(idOf(0));
    waitUntil([&] { return reads(Texts::interrupted); });
}

// An archive that takes long to open, because nearly all of it is a hole.
TEST_F(ListWindow, OffersToStopALongOpening) {
    const URL url = folder_.write("hole.mbox", "From x Mon Jan  1 10:00:00 2024\nSubject: s\n\n");
    std::filesystem::resize_file(folder_.path("hole.mbox"), std::uintmax_t{1} << 34);
    model_->open({url});
    waitUntil([this] { return labelIn(root(), "Cancel") != nullptr; });
    ASSERT_TRUE(*model_->busy);
    g_signal_emit_by_name(buttonIn(root(), "Cancel"), "clicked");
    EXPECT_FALSE(*model_->busy);
    waitUntil([this] { return !labelIn(root(), "Cancel"); });
}

// Return reads the row it is pressed on, and again what could not be read; in the search field the first hit.
TEST_F(ListWindow, ReadsWhatReturnIsPressedOn) {
    const auto pressOn = [this](guint position) {
        gtk_widget_activate_action(list(), "list.activate-item", "u", position);
        settle();
    };
    open({archive("three.mbox", 3), letter("a.eml", "a letter")});
    waitUntil([this] { return inView("number 0."); });
    pressOn(0);
    EXPECT_EQ(shownSubject(), "number 2.");

    model_->setQuery("number 1.");
    waitUntil([this] { return inView("number 1.") && !*model_->searching; });
    GtkWidget* const field =
        find(root(), [](GtkWidget* widget) { return GTK_IS_SEARCH_ENTRY(widget) != FALSE; });
    g_signal_emit_by_name(field, "activate");
    waitUntil([this] { return shownSubject() == "number 1."; });

    model_->selectCollection(idOf(1));
    settle();
    model_->select(std::nullopt);
    std::filesystem::rename(folder_.path("a.eml"), folder_.path("moved"));
    pressOn(0);
    EXPECT_EQ(shownSubject(), "nothing");
    std::filesystem::rename(folder_.path("moved"), folder_.path("a.eml"));
    pressOn(0);
    EXPECT_EQ(shownSubject(), "a letter");
}

// Tab passes a list at one stroke, stops at its selected row and opens nothing on its way.
TEST_F(ListWindow, IsPassedByTabAndKeepsTheFocusWithTheSelection) {
    open({archive("one.mbox", 60), archive("two.mbox", 60), archive("three.mbox", 60)});
    waitUntil([this] { return inView("number 0."); });
    gtk_widget_child_focus(sources(), GTK_DIR_TAB_FORWARD);
    ASSERT_TRUE(focusIn(sources()));
    for (int stops = 0; focusIn(sources()); ++stops) {
        ASSERT_LT(stops, 2) << "a row, and the button that closes it";
        tab(GTK_DIR_TAB_FORWARD);
    }
    EXPECT_EQ(*model_->selectedCollection, idOf(0));

    for (int stops = 0; !focusIn(list()); ++stops) {
        ASSERT_LT(stops, 10);
        tab(GTK_DIR_TAB_FORWARD);
    }
    const auto focused = [this](const char* subject) {
        const MessageRow* const row = rowIn(focus());
        return row && row->shownSubject().find(subject) != std::string::npos;
    };
    EXPECT_TRUE(focused("number 0."));
    model_->select(1);
    EXPECT_TRUE(focused("number 1."));
    model_->setNewestFirst(false);
    waitUntil([this] { return (*model_->filteredEntries)->front()->id == 0; });
    EXPECT_TRUE(focused("number 1."));
    tab(GTK_DIR_TAB_FORWARD);
    EXPECT_FALSE(focusIn(list()));
    tab(GTK_DIR_TAB_BACKWARD);
    EXPECT_TRUE(focused("number 1."));

    gtk_widget_child_focus(sources(), GTK_DIR_TAB_FORWARD);
    model_->closeCollection(idOf(0));
    EXPECT_TRUE(focusIn(sources()));
}

// Who and when are looked through: the address and the whole date are seen by pointing at the row.
TEST_F(ListWindow, ShowsNamesAndShortDates) {
    open({folder_.write("a.eml", Mail()
                                     .from("\"Ann Linden\" <ann@tessel.example>")
                                     .subject("Tides")
                                     .date("1 Jan 1990 10:00:00 +0000")
                                     .text("High")
                                     .string())});
    waitUntil([this] { return inView("Tides"); });
    const MessageRow* const row = rowIn(list());
    ASSERT_TRUE(row);
    EXPECT_EQ(row->shownSender(), "\u2068Ann Linden\u2069");
    EXPECT_EQ(row->shownDate(), MailCore::BriefDate(systemLocale()).text(631'188'000, 631'188'000 * 2.0));
    EXPECT_EQ(row->shownDate().find("UTC"), std::string::npos);
}

// The menu of a row closes its file, whatever is selected; beside the rows there is none.
TEST_F(ListWindow, ClosesTheFileWhoseMenuIsOpened) {
    open({letter("a.eml", "a"), letter("b.eml", "b"), letter("c.eml", "c")});
    waitUntil([this] { return sources() && gtk_widget_get_height(sources()) > 0; });
    GtkEventController* click = nullptr;
    const auto controllers = ObjectRef<GListModel>::adopt(gtk_widget_observe_controllers(sources()));
    for (guint at = 0; at < g_list_model_get_n_items(controllers.get()); ++at) {
        const auto controller =
            ObjectRef<GObject>::adopt(G_OBJECT(g_list_model_get_item(controllers.get(), at)));
        if (GTK_IS_GESTURE_CLICK(controller.get()) &&
            gtk_gesture_single_get_button(GTK_GESTURE_SINGLE(controller.get())) == GDK_BUTTON_SECONDARY)
            click = GTK_EVENT_CONTROLLER(controller.get());
    }
    ASSERT_TRUE(click);
    const auto menu = [this] {
        return find(sources(), [](GtkWidget* widget) {
            return GTK_IS_POPOVER(widget) && gtk_widget_get_visible(widget);
        });
    };
    g_signal_emit_by_name(click, "pressed", 1, 5.0, 10'000.0);
    EXPECT_FALSE(menu());
    graphene_rect_t place;
    waitUntil([&] { // until the rows have their places
        GtkListBoxRow* const second = gtk_list_box_get_row_at_index(GTK_LIST_BOX(sources()), 1);
        return second && gtk_widget_compute_bounds(GTK_WIDGET(second), sources(), &place) &&
               place.origin.y > 0 && place.size.height > 0;
    });
    g_signal_emit_by_name(click, "pressed", 1, 5.0, place.origin.y + place.size.height / 2.0);
    ASSERT_TRUE(menu());
    EXPECT_TRUE(labelIn(menu(), "Close file"));
    EXPECT_TRUE(gtk_widget_activate_action(menu(), "source.close", nullptr));
    settle();
    EXPECT_EQ(openNames(), (std::vector<std::string>{"a.eml", "c.eml"}));
    EXPECT_EQ(*model_->selectedCollection, idOf(0));
}

// What stands in for a missing subject is a text of the window.
TEST_F(ListWindow, SpeaksTheChosenLanguageInItsRows) {
    open({folder_.write("a.mbox", mailbox({"", ""}))});
    const auto both = [this](const char* text) {
        const auto rows = rowsInView();
        return rows.size() == 2 && rows[0] == text && rows[1] == text;
    };
    waitUntil([&] { return both("(No subject)"); });
    preferences_.setLanguage("zh-CN");
    EXPECT_TRUE(both("（无主题）"));
}

TEST_F(ListWindow, HasTallerRowsForALargerFont) {
    open({folder_.write("a.mbox", mailbox({"one", "two"}))});
    const auto height = [this] {
        const MessageRow* const row = rowIn(list());
        return row ? row->get_height() : 0;
    };
    waitUntil([&] { return height() > 0; });
    const int before = height();
    const auto settings = Gtk::Settings::get_default();
    const Glib::ustring font = settings->property_gtk_font_name();
    settings->property_gtk_font_name() = "Sans 30";
    waitUntil([&] { return height() >= before + 40; });
    settings->property_gtk_font_name() = font;
    waitUntil([&] { return height() == before; });
}

} // namespace
} // namespace TesselMail::Testing
