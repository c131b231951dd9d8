#include "TesselMail/Views/SettingsWindow.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Views/AdwaitaWidgets.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TesselMail {
namespace {

constexpr auto languages = std::to_array<std::string_view>({"auto", "en-US", "zh-CN"});
constexpr auto appearances = std::to_array<std::string_view>({"auto", "light", "dark"});
constexpr int narrowest = 320; // pixels, so that it fits where the main window does, frame and all
constexpr auto textSizes = std::to_array<double>({14, 16, 18, 20});

// The place of a stored value among those that are offered; none when it is another.
template <typename Values, typename Value>
guint placeOf(const Values& values, const Value& value) {
    const auto found = std::ranges::find(values, value);
    return found == values.end() ? GTK_INVALID_LIST_POSITION : static_cast<guint>(found - values.begin());
}

bool offers(GListModel* list, const std::vector<std::string>& choices) {
    if (!list || g_list_model_get_n_items(list) != choices.size()) return false;
    for (guint at = 0; at < choices.size(); ++at)
        if (choices[at] != gtk_string_list_get_string(GTK_STRING_LIST(list), at)) return false;
    return true;
}

// A row that loses its list loses its open choices with it: only other texts are worth that.
void offer(AdwComboRow* row, const std::string& title, const std::vector<std::string>& choices,
           guint chosen) {
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), title.c_str());
    if (!offers(adw_combo_row_get_model(row), choices)) {
        std::vector<const char*> texts;
        for (const std::string& choice : choices) texts.push_back(choice.c_str());
        texts.push_back(nullptr);
        // The row keeps its list, and with it the focus that it has.
        if (GListModel* const list = adw_combo_row_get_model(row)) {
            gtk_string_list_splice(GTK_STRING_LIST(list), 0, g_list_model_get_n_items(list), texts.data());
        } else {
            const auto made = ObjectRef<GtkStringList>::adopt(gtk_string_list_new(texts.data()));
            adw_combo_row_set_model(row, G_LIST_MODEL(made.get()));
        }
    }
    if (adw_combo_row_get_selected(row) != chosen) adw_combo_row_set_selected(row, chosen);
}

} // namespace

SettingsWindow::SettingsWindow(AppModel& model, Gtk::Window& parent)
    : model_(model),
      window_(ObjectRef<AdwPreferencesWindow>::retain(ADW_PREFERENCES_WINDOW(adw_preferences_window_new()))),
      page_(ADW_PREFERENCES_PAGE(adw_preferences_page_new())) {
    gtk_widget_set_size_request(GTK_WIDGET(window()), narrowest, -1);
    Adwaita::attach(window(), parent);
    g_signal_connect_swapped(window(), "close-request", G_CALLBACK(+[](SettingsWindow* self) -> gboolean {
                                 self->closed_.emit();
                                 return TRUE; // the owner takes it apart
                             }),
                             this);
    adw_preferences_window_set_search_enabled(window_.get(), FALSE);
    adw_preferences_window_add(window_.get(), page_);
    reading_ = addGroup();
    language_ = addChoice(reading_);
    appearance_ = addChoice(reading_);
    textSize_ = addChoice(reading_);
    links_ = addGroup();
    addHandlerRows();
    privacy_ = addGroup();
    privacyRow_ = ADW_ACTION_ROW(adw_action_row_new());
    adw_action_row_set_icon_name(privacyRow_, "security-high-symbolic");
    adw_preferences_group_add(privacy_, GTK_WIDGET(privacyRow_));
    changed_ = model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &SettingsWindow::showTexts));
    showTexts();
}

SettingsWindow::~SettingsWindow() {
    alive_.end();
    changed_.disconnect();
    for (gpointer const object : {static_cast<gpointer>(language_), static_cast<gpointer>(appearance_),
                                  static_cast<gpointer>(textSize_), static_cast<gpointer>(becomeHandler_),
                                  static_cast<gpointer>(window_.get())})
        g_signal_handlers_disconnect_by_data(object, this);
    gtk_window_destroy(window());
}

AdwPreferencesGroup* SettingsWindow::addGroup() {
    auto* const group = ADW_PREFERENCES_GROUP(adw_preferences_group_new());
    adw_preferences_page_add(page_, group);
    return group;
}

AdwComboRow* SettingsWindow::addChoice(AdwPreferencesGroup* group) {
    auto* const row = ADW_COMBO_ROW(adw_combo_row_new());
    adw_preferences_group_add(group, GTK_WIDGET(row));
    g_signal_connect(
        row, "notify::selected",
        G_CALLBACK(+[](AdwComboRow* changed, GParamSpec*, SettingsWindow* self) { self->choose(changed); }),
        this);
    return row;
}

void SettingsWindow::addHandlerRows() {
    becomeHandler_ = GTK_BUTTON(gtk_button_new());
    gtk_widget_set_halign(GTK_WIDGET(becomeHandler_), GTK_ALIGN_START);
    g_signal_connect_swapped(becomeHandler_, "clicked",
                             G_CALLBACK(+[](SettingsWindow* self) { self->askToBecomeHandler(); }), this);
    handlerStatus_ = GTK_LABEL(gtk_label_new(""));
    Adwaita::makeLive(Adwaita::wrapped(handlerStatus_), Adwaita::Live::alert);
    gtk_label_set_xalign(handlerStatus_, 0);
    gtk_label_set_wrap(handlerStatus_, TRUE);
    gtk_widget_set_visible(GTK_WIDGET(handlerStatus_), FALSE);
    gtk_widget_set_margin_top(GTK_WIDGET(handlerStatus_), 8);
    adw_preferences_group_add(links_, GTK_WIDGET(becomeHandler_));
    adw_preferences_group_add(links_, GTK_WIDGET(handlerStatus_));
}

void SettingsWindow::showTexts() {
    const Preferences& preferences = model_.preferences();
    const auto text = [&preferences](const Phrase& pair) { return preferences.text(pair); };
    const bool before = std::exchange(updating_, true);
    gtk_window_set_title(window(), text(Texts::settings).c_str());
    adw_preferences_group_set_title(reading_, text(Texts::readingSettings).c_str());
    offer(language_, text(Texts::language),
          {text(Texts::automatic), text(Texts::english), text(Texts::simplifiedChinese)},
          placeOf(languages, preferences.language()));
    offer(appearance_, text(Texts::appearance),
          {text(Texts::automatic), text(Texts::light), text(Texts::dark)},
          placeOf(appearances, preferences.appearance()));
    offer(textSize_, text(Texts::textSize), {"14 pt", "16 pt", "18 pt", "20 pt"},
          placeOf(textSizes, preferences.textSize()));
    adw_preferences_group_set_title(links_, text(Texts::emailLinks).c_str());
    adw_preferences_group_set_description(links_, text(Texts::emailLinksHint).c_str());
    gtk_button_set_label(becomeHandler_, text(Texts::becomeHandler).c_str());
    adw_preferences_group_set_title(privacy_, text(Texts::privacy).c_str());
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(privacyRow_), text(Texts::privacyHeadline).c_str());
    adw_action_row_set_subtitle(privacyRow_, text(Texts::privacyText).c_str());
    updating_ = before;
}

// The row is in the middle of telling of its choice, and a change of settings gives rows other texts: it
// waits until the row is done.
void SettingsWindow::choose(AdwComboRow* row) {
    const guint place = adw_combo_row_get_selected(row);
    if (updating_ || place == GTK_INVALID_LIST_POSITION) return;
    InterfaceThread::post([self = alive_.handle(), row, place] {
        if (self) self->store(row, place);
    });
}

void SettingsWindow::store(const AdwComboRow* row, guint place) {
    Preferences& preferences = model_.preferences();
    if (row == language_ && place < languages.size())
        preferences.setLanguage(std::string(languages[place]));
    else if (row == appearance_ && place < appearances.size())
        preferences.setAppearance(std::string(appearances[place]));
    else if (row == textSize_ && place < textSizes.size())
        preferences.setTextSize(textSizes[place]);
}

void SettingsWindow::askToBecomeHandler() {
    const Preferences& preferences = model_.preferences();
    auto* const question = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(window(), preferences.text(Texts::becomeHandlerQuestion).c_str(),
                               preferences.text(Texts::becomeHandlerHint).c_str()));
    adw_message_dialog_add_response(question, "yes", preferences.text(Texts::becomeHandlerAnswer).c_str());
    adw_message_dialog_add_response(question, "cancel", preferences.text(Texts::cancel).c_str());
    adw_message_dialog_set_default_response(question, "yes");
    adw_message_dialog_set_close_response(question, "cancel");
    using Handle = MailCore::Alive<SettingsWindow>::Handle;
    auto self = std::make_unique<Handle>(alive_.handle());
    g_signal_connect_data(
        question, "response", G_CALLBACK(+[](AdwMessageDialog*, const char* answer, const Handle* window) {
            if (*window && std::string_view(answer) == "yes")
                becomeHandler(*window, (*window)->model_.becomeMailHandler());
        }),
        self.release(),
        +[](gpointer data, GClosure*) { const std::unique_ptr<Handle> owned(static_cast<Handle*>(data)); },
        GConnectFlags(0));
    gtk_window_present(GTK_WINDOW(question));
}

Task SettingsWindow::becomeHandler(MailCore::Alive<SettingsWindow>::Handle self, Later<bool> done) {
    const bool changed = co_await std::move(done);
    if (!self) co_return;
    SettingsWindow& window = *self.get();
    gtk_label_set_text(
        window.handlerStatus_,
        window.model_.preferences().text(changed ? Texts::handlerSet : Texts::handlerFailed).c_str());
    gtk_widget_set_visible(GTK_WIDGET(window.handlerStatus_), TRUE);
}

} // namespace TesselMail
