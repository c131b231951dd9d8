// What the window offers when something fails.
#include "MailCore/Model/Limits.h"
#include "tests/Application/WindowFixture.h"

#include <filesystem>

namespace TesselMail::Testing {
namespace {

class ErrorWindow : public Window {
protected:
    static AdwMessageDialog* dialog() {
        AdwMessageDialog* found = nullptr;
        GList* const windows = gtk_window_list_toplevels();
        for (const GList* item = windows; item; item = item->next)
            if (ADW_IS_MESSAGE_DIALOG(item->data) && gtk_widget_get_visible(GTK_WIDGET(item->data)))
                found = ADW_MESSAGE_DIALOG(item->data);
        g_list_free(windows);
        return found;
    }
    GtkWidget* root() { return GTK_WIDGET(window_->gobj()); }
    static void press(GtkButton* button) {
        ASSERT_TRUE(button);
        g_signal_emit_by_name(button, "clicked");
    }
    /// Whether the pane shows the failed page with `sentence` and, of the two buttons, only `button`.
    void expectPage(const Phrase& sentence, const std::string& button) {
        waitUntil([&] { return labelIn(root(), preferences_.text(sentence)); });
        for (const Phrase& text : {Texts::tryAgain, Texts::reopen}) {
            GtkButton* const offered = buttonIn(root(), preferences_.text(text));
            EXPECT_EQ(offered && gtk_widget_get_visible(GTK_WIDGET(offered)),
                      preferences_.text(text) == button);
        }
    }

private:
    static bool labelIn(GtkWidget* widget, const std::string& text) {
        if (!gtk_widget_get_child_visible(widget) || !gtk_widget_get_visible(widget)) return false;
        if (GTK_IS_LABEL(widget) && gtk_label_get_text(GTK_LABEL(widget)) == text) return true;
        for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
             child = gtk_widget_get_next_sibling(child))
            if (labelIn(child, text)) return true;
        return false;
    }
};

TEST_F(ErrorWindow, OffersToOpenAChangedSourceAgainAndDoesIt) {
    const URL box = folder_.write("box.mbox", mailbox({"one", "two"}));
    for (const bool fromDialog : {true, false}) {
        SCOPED_TRACE(fromDialog ? "in the dialog" : "in the pane");
        open({box});
        folder_.touch("box.mbox");
        model_->select(1);
        settle();
        expectPage(Texts::sourceChanged, "Reopen");
        ASSERT_TRUE(dialog());
        press(buttonIn(GTK_WIDGET(dialog()), fromDialog ? "Reopen" : "OK"));
        if (!fromDialog) {
            waitUntil([] { return dialog() == nullptr; });
            EXPECT_FALSE(*model_->error);
            press(buttonIn(root(), "Reopen"));
        }
        settle();
        EXPECT_EQ(shownSubject(), "two");
        EXPECT_FALSE(*model_->error);
        waitUntil([] { return dialog() == nullptr; });
        EXPECT_EQ(model_->collections->size(), 1U);
        model_->closeAll();
    }
}

TEST_F(ErrorWindow, OffersNothingWhereNothingCanHelp) {
    const URL large = folder_.write("large.eml", Mail().subject("large").text("Hello").string());
    std::filesystem::resize_file(folder_.path("large.eml"), std::uintmax_t{MailCore::Limits::message} + 1);
    open({folder_.write("broken.eml", Mail().subject("broken").base64("").body("A").string())});
    expectPage(Texts::malformed, "");
    open({large});
    expectPage(Texts::tooLargeToPreview, "");
}

TEST_F(ErrorWindow, OffersToTryAgainOnlyWhereThatCanHelp) {
    open({letter("a.eml", "a"), letter("b.eml", "b")});
    std::filesystem::remove(folder_.path("b.eml"));
    model_->selectCollection(idOf(1));
    settle();
    expectPage(Texts::fileMissing, "Try again");
    preferences_.setLanguage("zh-CN"); // with the page on show
    expectPage(Texts::fileMissing, "重试");
    preferences_.setLanguage("en-US");
    ASSERT_TRUE(dialog());
    EXPECT_FALSE(adw_message_dialog_has_response(dialog(), "reopen"));

    // Another failure while the dialog is open: it offers what this one needs.
    folder_.touch("a.eml");
    model_->selectCollection(idOf(0));
    model_->select(std::nullopt);
    model_->select(0);
    waitUntil([this] { return *model_->remedy == Remedy::reopen; });
    ASSERT_TRUE(dialog());
    EXPECT_TRUE(adw_message_dialog_has_response(dialog(), "reopen"));
    EXPECT_TRUE(*model_->error);
    press(buttonIn(GTK_WIDGET(dialog()), "OK"));
    waitUntil([] { return dialog() == nullptr; });
}

} // namespace
} // namespace TesselMail::Testing
