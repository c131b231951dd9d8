#include "TesselMail/Views/MainWindow.h"

#include "TesselMail/Views/Actions.h"
#include "TesselMail/Views/Shortcuts.h"
#include "TesselMail/Views/Style.h"

#include <gio/gio.h>

namespace TesselMail {
MainWindow::MainWindow(AppModel& model, WindowState& state, PreparedView prepared)
    : model_(model), startsWithFiles_(*model.busy), state_(state), welcome_(model),
      panes_(model, state, std::move(prepared)), opening_(model), toasts_(model) {
    installStyle(get_display());
    set_default_size(state.width, state.height);
    if (state.maximized) maximize();
    set_size_request(360, 420);
    // The panes bring their own header bars.
    auto* const noTitle = Gtk::make_managed<Gtk::Box>();
    noTitle->set_visible(false);
    set_titlebar(*noTitle);

    stack_.add(welcome_, "welcome");
    stack_.add(panes_.widget(), "content");
    stack_.set_hhomogeneous(false);
    stack_.set_vhomogeneous(false);
    toasts_.setChild(stack_);
    overlay_.set_child(toasts_.widget());
    overlay_.add_overlay(opening_);
    dropFrame_.add_css_class("drop-frame");
    dropFrame_.set_can_target(false);
    dropFrame_.set_visible(false);
    overlay_.add_overlay(dropFrame_);
    set_child(overlay_);

    addActions();
    addDropTarget();
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showWelcome));
    model_.busy.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showStarted));
    model_.selectedCollection.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showSelectedList));
    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showCapture));
    for (auto* const signal : {&model_.collections.signalChanged(), &model_.readRequest.signalChanged(),
                               &model_.reading.signalChanged(), &model_.showDetails.signalChanged(),
                               &model_.selectionVersion.signalChanged()})
        signal->connect(sigc::mem_fun(*this, &MainWindow::showCommands));
    model_.error.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showError));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showTexts));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showAppearance));
    showTexts();
    showAppearance();
    showWelcome();
    showCommands();
    showError();
}

MainWindow::~MainWindow() {
    keepState();
    if (const auto dialog = errorDialog_.get()) {
        g_signal_handlers_disconnect_by_data(dialog.get(), this);
        gtk_window_destroy(GTK_WINDOW(dialog.get()));
    }
}

void MainWindow::addActions() {
    add_action(Actions::open.name(), sigc::mem_fun(model_, &AppModel::chooseFiles));
    add_action(Actions::openFolder.name(), sigc::mem_fun(model_, &AppModel::chooseFolder));
    closeAll_ = add_action(Actions::closeAll.name(), sigc::mem_fun(model_, &AppModel::closeAll));
    export_ = add_action(Actions::exportOriginal.name(), sigc::mem_fun(model_, &AppModel::exportOriginal));
    add_action(Actions::search.name(), [this] {
        panes_.showList();
        panes_.list().focusSearch();
    });
    add_action(Actions::settings.name(), sigc::mem_fun(*this, &MainWindow::showSettings));
    for (const auto& [action, steps] : {std::pair{Actions::nextPane, 1}, {Actions::previousPane, -1}})
        add_action(action.name(), [this, by = steps] { panes_.moveFocus(by); });
    for (const auto& [action, steps] : {std::pair{Actions::widenPane, 1}, {Actions::narrowPane, -1}})
        add_action(action.name(), [this, by = steps] { panes_.widen(by); });
    add_action(Actions::back.name(), sigc::mem_fun(panes_, &Panes::goBack));
    add_action(Actions::nextMessage.name(), sigc::mem_fun(panes_.list(), &MessageList::selectNext));
    add_action(Actions::previousMessage.name(), sigc::mem_fun(panes_.list(), &MessageList::selectPrevious));
    add_action(Actions::shortcuts.name(), [this] { showShortcuts(*this, model_.preferences()); });
    add_action(panes_.reader().plainTextAction());
    details_ =
        add_action_bool(Actions::details.name(), [this] { model_.setShowDetails(!*model_.showDetails); });
}

// In the capture phase: the reading view would take the drop for itself.
void MainWindow::addDropTarget() {
    const auto target = Gtk::DropTarget::create(GDK_TYPE_FILE_LIST, Gdk::DragAction::COPY);
    target->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    target->signal_accept().connect(sigc::mem_fun(*this, &MainWindow::offersFiles), false);
    target->set_preload(true);
    target->property_value().signal_changed().connect(
        [this, offered = target.get()] { dropFrame_.set_visible(holdsFiles(*offered)); });
    target->signal_leave().connect([this] { dropFrame_.set_visible(false); });
    target->signal_drop().connect(sigc::mem_fun(*this, &MainWindow::drop), false);
    add_controller(target);
}

// A link or a text that is dragged offers its address in the same way as a file.
bool MainWindow::holdsFiles(const Gtk::DropTarget& target) {
    const GValue* const value = gtk_drop_target_get_value(const_cast<GtkDropTarget*>(target.gobj()));
    const auto* item = value ? static_cast<const GSList*>(g_value_get_boxed(value)) : nullptr;
    while (item && !g_file_peek_path(G_FILE(item->data))) item = item->next;
    return item != nullptr;
}

// What this window drags is never a file.
bool MainWindow::offersFiles(const Glib::RefPtr<Gdk::Drop>& drop) const {
    if (gdk_drop_get_drag(drop->gobj())) return false;
    const auto formats = drop->get_formats();
    return formats->contain_gtype(GDK_TYPE_FILE_LIST) || formats->contain_mime_type("text/uri-list") ||
           formats->contain_mime_type("application/vnd.portal.filetransfer");
}

bool MainWindow::drop(const Glib::ValueBase& value, double, double) {
    dropFrame_.set_visible(false);
    std::vector<MailCore::URL> urls;
    const auto* item = static_cast<const GSList*>(g_value_get_boxed(value.gobj()));
    std::size_t offered = 0;
    for (; item && offered < AppModel::mostFiles; item = item->next, ++offered)
        if (const char* const path = g_file_peek_path(G_FILE(item->data)))
            urls.push_back(MailCore::URL::file(path));
    std::size_t left = 0;
    for (; item; item = item->next)
        if (g_file_peek_path(G_FILE(item->data))) ++left;
    model_.open(urls, left);
    return !urls.empty();
}

void MainWindow::showTexts() {
    const Preferences& preferences = model_.preferences();
    set_title(preferences.text(Texts::applicationName));
    panes_.showTexts();
}

void MainWindow::showStarted() {
    startsWithFiles_ = false;
    showWelcome();
}

void MainWindow::showWelcome() {
    const bool nothing = model_.collections->empty() && !*model_.capture && !startsWithFiles_;
    if (nothing != (stack_.get_visible_child_name() == "welcome")) {
        stack_.set_visible_child(nothing ? "welcome" : "content");
        if (nothing) welcome_.focusOpen(); // the focus went with what was closed
    }
    closeAll_->set_enabled(!model_.collections->empty() || *model_.capture);
}

void MainWindow::showCommands() {
    export_->set_enabled(model_.canExportOriginal());
    details_->set_enabled(*model_.message != nullptr);
    details_->change_state(*model_.showDetails);
}

void MainWindow::keepState() {
    panes_.keepWidths();
    state_.maximized = is_maximized();
    get_default_size(state_.width, state_.height); // of the window when it is not
    state_.newestFirst = *model_.newestFirst;
    state_.store();
}

void MainWindow::showCapture() {
    showWelcome();
    if (*model_.capture) panes_.showReader();
}

// A captured link takes the selection away and stands where the message stood.
void MainWindow::showSelectedList() {
    if (!*model_.capture) panes_.showSelected();
}

void MainWindow::showSettings() {
    if (!settings_) {
        settings_ = std::make_unique<SettingsWindow>(model_, *this);
        settings_->signalClosed().connect(
            [this] { Glib::signal_idle().connect_once(sigc::mem_fun(*this, &MainWindow::closeSettings)); });
    }
    settings_->present();
}

void MainWindow::closeSettings() {
    settings_.reset();
}

void MainWindow::showAppearance() {
    const std::string& appearance = model_.preferences().appearance();
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(),
                                       appearance == "dark"    ? ADW_COLOR_SCHEME_FORCE_DARK
                                       : appearance == "light" ? ADW_COLOR_SCHEME_FORCE_LIGHT
                                                               : ADW_COLOR_SCHEME_DEFAULT);
}

void MainWindow::showError() {
    const auto shown = errorDialog_.get();
    if (!*model_.error) {
        if (shown) gtk_window_close(GTK_WINDOW(shown.get()));
        return;
    }
    const bool reopens = *model_.remedy == Remedy::reopen;
    if (shown && static_cast<bool>(adw_message_dialog_has_response(shown.get(), "reopen")) == reopens)
        return adw_message_dialog_set_body(shown.get(), (*model_.error)->c_str());
    if (shown) { // another one with other answers takes its place
        g_signal_handlers_disconnect_by_data(shown.get(), this);
        gtk_window_destroy(GTK_WINDOW(shown.get()));
    }

    const Preferences& preferences = model_.preferences();
    auto* const dialog = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(gobj() ? GTK_WINDOW(gobj()) : nullptr,
                               preferences.text(Texts::couldNotComplete).c_str(), (*model_.error)->c_str()));
    Adwaita::attach(GTK_WINDOW(dialog), *this);
    if (reopens) adw_message_dialog_add_response(dialog, "reopen", preferences.text(Texts::reopen).c_str());
    adw_message_dialog_add_response(dialog, "ok", preferences.text(Texts::ok).c_str());
    adw_message_dialog_set_default_response(dialog, "ok");
    adw_message_dialog_set_close_response(dialog, "ok");
    g_signal_connect_swapped(dialog, "response", G_CALLBACK(+[](MainWindow* self, const char* response) {
                                 self->errorDismissed(std::string_view(response) == "reopen");
                             }),
                             this);
    errorDialog_.set(dialog);
    gtk_window_present(GTK_WINDOW(dialog));
}

void MainWindow::errorDismissed(bool reopen) {
    errorDialog_.set(nullptr);
    if (reopen)
        model_.reopenSource();
    else
        model_.dismissError();
}

} // namespace TesselMail
