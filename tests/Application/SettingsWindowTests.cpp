// The settings, changed while everything else is open.
#include "tests/Application/WindowFixture.h"

namespace TesselMail::Testing {
namespace {

GtkWindow* settings() {
    GtkWindow* found = nullptr;
    GListModel* const windows = gtk_window_get_toplevels();
    for (guint at = 0; at < g_list_model_get_n_items(windows); ++at) {
        const auto window = ObjectRef<GtkWindow>::adopt(GTK_WINDOW(g_list_model_get_item(windows, at)));
        if (ADW_IS_PREFERENCES_WINDOW(window.get())) found = window.get();
    }
    return found;
}

/// The question that is asked; null when there is none.
AdwMessageDialog* question() {
    AdwMessageDialog* found = nullptr;
    GListModel* const windows = gtk_window_get_toplevels();
    for (guint at = 0; at < g_list_model_get_n_items(windows); ++at) {
        const auto window = ObjectRef<GtkWidget>::adopt(GTK_WIDGET(g_list_model_get_item(windows, at)));
        if (ADW_IS_MESSAGE_DIALOG(window.get()) && gtk_widget_get_visible(window.get()))
            found = ADW_MESSAGE_DIALOG(window.get());
    }
    return found;
}

bool labelIn(GtkWidget* widget, const std::string& text) {
    if (GTK_IS_LABEL(widget) && gtk_widget_get_mapped(widget) &&
        gtk_label_get_text(GTK_LABEL(widget)) == text)
        return true;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        if (labelIn(child, text)) return true;
    return false;
}

/// The rows with choices, from the top.
void collectRows(GtkWidget* widget, std::vector<AdwComboRow*>& rows) {
    if (ADW_IS_COMBO_ROW(widget)) rows.push_back(ADW_COMBO_ROW(widget));
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child))
        collectRows(child, rows);
}

class Settings : public Window {
protected:
    std::vector<AdwComboRow*> show() {
        window_->activate_action("win.settings");
        waitUntil([] { return settings() != nullptr; });
        std::vector<AdwComboRow*> rows;
        collectRows(GTK_WIDGET(settings()), rows);
        return rows;
    }
};

TEST_F(Settings, ChangeEverythingWhileItIsOpenAndComeBack) {
    open({folder_.write("a.mbox", mailbox({"one", "two"}))});
    waitForPage("Hello");
    for (int round = 0; round < 2; ++round) {
        const std::vector<AdwComboRow*> rows = show();
        ASSERT_EQ(rows.size(), 3U);
        EXPECT_TRUE(gtk_widget_has_focus(GTK_WIDGET(rows[0])) || gtk_window_get_focus(settings()) != nullptr);
        adw_combo_row_set_selected(rows[0], 2);
        waitUntil([this] { return preferences_.language() == "zh-CN"; });
        EXPECT_STREQ(gtk_window_get_title(settings()), "设置");
        adw_combo_row_set_selected(rows[1], 2);
        adw_combo_row_set_selected(rows[2], 3);
        waitUntil([this] { return preferences_.appearance() == "dark" && preferences_.textSize() == 20; });
        adw_combo_row_set_selected(rows[0], 1);
        adw_combo_row_set_selected(rows[1], 0);
        adw_combo_row_set_selected(rows[2], 1);
        waitUntil([this] { return preferences_.language() == "en-US" && preferences_.textSize() == 16; });
        gtk_window_close(settings());
        waitUntil([] { return settings() == nullptr; });
    }
}

TEST_F(Settings, GiveTheProgramItsAppearance) {
    for (const auto& [appearance, scheme] : {std::pair{"dark", ADW_COLOR_SCHEME_FORCE_DARK},
                                             {"light", ADW_COLOR_SCHEME_FORCE_LIGHT},
                                             {"auto", ADW_COLOR_SCHEME_DEFAULT}}) {
        preferences_.setAppearance(appearance);
        EXPECT_EQ(adw_style_manager_get_color_scheme(adw_style_manager_get_default()), scheme) << appearance;
    }
}

TEST_F(Settings, AskBeforeMailLinksComeHere) {
    show();
    const auto reads = [](const Phrase& text) {
        return labelIn(GTK_WIDGET(settings()), std::string(text.english));
    };
    for (const bool agreed : {false, true}) {
        g_signal_emit_by_name(buttonIn(GTK_WIDGET(settings()), std::string(Texts::becomeHandler.english)),
                              "clicked");
        waitUntil([] { return question() != nullptr; });
        const Phrase& answer = agreed ? Texts::becomeHandlerAnswer : Texts::cancel;
        g_signal_emit_by_name(buttonIn(GTK_WIDGET(question()), std::string(answer.english)), "clicked");
        waitUntil([] { return question() == nullptr; });
        drain();
        if (agreed) waitUntil([&] { return reads(Texts::handlerSet); });
        EXPECT_EQ(reads(Texts::handlerSet), agreed);
    }
}

} // namespace
} // namespace TesselMail::Testing
