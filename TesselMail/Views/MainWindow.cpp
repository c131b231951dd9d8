#include "TesselMail/Views/MainWindow.h"

#include "TesselMail/Views/Shortcuts.h"
#include "TesselMail/Views/Style.h"

#include <gio/gio.h>

namespace TesselMail {
namespace {

constexpr std::size_t filesPerDrop = 20;

AdwLeaflet* makeLeaflet() {
    auto* const leaflet = ADW_LEAFLET(adw_leaflet_new());
    adw_leaflet_set_can_navigate_back(leaflet, TRUE);
    adw_leaflet_set_transition_type(leaflet, ADW_LEAFLET_TRANSITION_TYPE_SLIDE);
    return leaflet;
}

void append(AdwLeaflet* leaflet, Gtk::Widget& child, bool separator) {
    if (separator) {
        AdwLeafletPage* const page = adw_leaflet_append(leaflet, gtk_separator_new(GTK_ORIENTATION_VERTICAL));
        adw_leaflet_page_set_navigatable(page, FALSE);
    }
    adw_leaflet_append(leaflet, child.gobj());
}

void setUpBackButton(Gtk::Button& button) {
    button.set_icon_name("go-previous-symbolic");
    button.set_visible(false);
}

} // namespace

MainWindow::MainWindow(AppModel& model)
    : model_(model), welcome_(model), sidebar_(model), list_(model), reader_(model), opening_(model),
      outer_(makeLeaflet()), inner_(makeLeaflet()) {
    installStyle(get_display());
    set_default_size(1180, 760);
    set_size_request(360, 420);
    // The panes bring their own header bars.
    auto* const noTitle = Gtk::make_managed<Gtk::Box>();
    noTitle->set_visible(false);
    set_titlebar(*noTitle);

    arrangePanes();
    stack_.add(welcome_, "welcome");
    stack_.add(Adwaita::wrapped(outer_), "content");
    stack_.set_hhomogeneous(false);
    stack_.set_vhomogeneous(false);
    overlay_.set_child(stack_);
    overlay_.add_overlay(opening_);
    dropFrame_.add_css_class("drop-frame");
    dropFrame_.set_can_target(false);
    dropFrame_.set_visible(false);
    overlay_.add_overlay(dropFrame_);
    set_child(overlay_);

    addActions();
    addDropTarget();
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showWelcome));
    model_.selectedCollection.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showSelectedList));
    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showCapture));
    for (auto* const signal : {&model_.collections.signalChanged(), &model_.readRequest.signalChanged(),
                               &model_.reading.signalChanged(), &model_.showDetails.signalChanged(),
                               &model_.selectionVersion.signalChanged()})
        signal->connect(sigc::mem_fun(*this, &MainWindow::showCommands));
    model_.error.signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showError));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showTexts));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &MainWindow::showAppearance));
    sidebar_.signalChosen().connect(sigc::mem_fun(*this, &MainWindow::showList));
    list_.signalChosen().connect(sigc::mem_fun(*this, &MainWindow::showReader));
    showTexts();
    showAppearance();
    showWelcome();
    showFolded();
    showCommands();
    showError();
}

MainWindow::~MainWindow() {
    g_signal_handlers_disconnect_by_data(outer_, this);
    g_signal_handlers_disconnect_by_data(inner_, this);
    if (const auto dialog = errorDialog_.get()) {
        g_signal_handlers_disconnect_by_data(dialog.get(), this);
        gtk_window_destroy(GTK_WINDOW(dialog.get()));
    }
}

void MainWindow::arrangePanes() {
    sidebar_.set_size_request(230, -1);
    list_.set_size_request(310, -1);
    reader_.set_size_request(350, -1);
    // Said plainly, because what is in them would like to grow.
    sidebar_.set_hexpand(false);
    list_.set_hexpand(false);
    reader_.set_hexpand(true);
    setUpBackButton(backToSources_);
    setUpBackButton(backToList_);
    backToSources_.signal_clicked().connect(sigc::mem_fun(*this, &MainWindow::showSources));
    backToList_.signal_clicked().connect(sigc::mem_fun(*this, &MainWindow::showList));
    list_.header().packStart(backToSources_);
    reader_.header().packStart(backToList_);

    append(inner_, list_, false);
    append(inner_, reader_, true);
    append(outer_, sidebar_, false);
    append(outer_, Adwaita::wrapped(inner_), true);
    Adwaita::wrapped(inner_).set_hexpand(true);
    for (AdwLeaflet* const leaflet : {outer_, inner_})
        g_signal_connect_swapped(leaflet, "notify::folded",
                                 G_CALLBACK(+[](MainWindow* self) { self->showFolded(); }), this);
    adw_leaflet_set_visible_child(outer_, GTK_WIDGET(inner_));
}

void MainWindow::addActions() {
    add_action("open", sigc::mem_fun(model_, &AppModel::chooseFiles));
    add_action("open-folder", sigc::mem_fun(model_, &AppModel::chooseFolder));
    closeAll_ = add_action("close-all", sigc::mem_fun(model_, &AppModel::closeAll));
    export_ = add_action("export-original", sigc::mem_fun(model_, &AppModel::exportOriginal));
    add_action("search", sigc::mem_fun(list_, &MessageList::focusSearch));
    add_action("settings", sigc::mem_fun(*this, &MainWindow::showSettings));
    add_action("shortcuts", [this] { showShortcuts(*this, model_.preferences()); });
    add_action(reader_.plainTextAction());
    details_ = add_action_bool("details", [this] { model_.setShowDetails(!*model_.showDetails); });
}

// In the capture phase: the reading view would take the drop for itself.
void MainWindow::addDropTarget() {
    const auto target = Gtk::DropTarget::create(GDK_TYPE_FILE_LIST, Gdk::DragAction::COPY);
    target->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    target->signal_enter().connect(
        [this](double, double) {
            dropFrame_.set_visible(true);
            return Gdk::DragAction::COPY;
        },
        false);
    target->signal_leave().connect([this] { dropFrame_.set_visible(false); });
    target->signal_drop().connect(sigc::mem_fun(*this, &MainWindow::drop), false);
    add_controller(target);
}

bool MainWindow::drop(const Glib::ValueBase& value, double, double) {
    dropFrame_.set_visible(false);
    std::vector<MailCore::URL> urls;
    const auto* item = static_cast<const GSList*>(g_value_get_boxed(value.gobj()));
    std::size_t offered = 0;
    for (; item && offered < filesPerDrop; item = item->next, ++offered)
        if (const char* const path = g_file_peek_path(G_FILE(item->data)))
            urls.push_back(MailCore::URL::file(path));
    model_.open(urls);
    return offered > 0;
}

void MainWindow::showTexts() {
    const Preferences& preferences = model_.preferences();
    set_title(preferences.text(Texts::applicationName));
    backToSources_.set_tooltip_text(preferences.text(Texts::openedFiles));
    backToList_.set_tooltip_text(preferences.text(Texts::messages));
}

void MainWindow::showWelcome() {
    stack_.set_visible_child(model_.collections->empty() && !*model_.capture ? "welcome" : "content");
    closeAll_->set_enabled(!model_.collections->empty() || *model_.capture);
}

// Every pane that stands at an edge of the window has the window's buttons of that edge.
void MainWindow::showFolded() {
    const bool sourcesApart = adw_leaflet_get_folded(outer_);
    const bool readerApart = adw_leaflet_get_folded(inner_);
    sidebar_.header().showWindowButtons(true, sourcesApart);
    list_.header().showWindowButtons(sourcesApart, readerApart);
    reader_.header().showWindowButtons(readerApart, true);
    backToSources_.set_visible(sourcesApart);
    backToList_.set_visible(readerApart);
}

void MainWindow::showCommands() {
    export_->set_enabled(model_.canExportOriginal() && !*model_.reading);
    details_->set_enabled(*model_.message != nullptr);
    details_->change_state(*model_.showDetails);
}

void MainWindow::showSources() {
    adw_leaflet_set_visible_child(outer_, GTK_WIDGET(sidebar_.gobj()));
}

void MainWindow::showList() {
    adw_leaflet_set_visible_child(outer_, GTK_WIDGET(inner_));
    adw_leaflet_set_visible_child(inner_, GTK_WIDGET(list_.gobj()));
}

void MainWindow::showReader() {
    adw_leaflet_set_visible_child(outer_, GTK_WIDGET(inner_));
    adw_leaflet_set_visible_child(inner_, GTK_WIDGET(reader_.gobj()));
}

void MainWindow::showCapture() {
    showWelcome();
    if (*model_.capture) showReader();
}

// A captured link takes the selection away and stands where the message stood.
void MainWindow::showSelectedList() {
    if (!*model_.capture) showList();
}

void MainWindow::showSettings() {
    if (!settings_) settings_ = std::make_unique<SettingsWindow>(model_, *this);
    settings_->present();
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
    if (shown) return adw_message_dialog_set_body(shown.get(), (*model_.error)->c_str());

    const Preferences& preferences = model_.preferences();
    auto* const dialog = ADW_MESSAGE_DIALOG(
        adw_message_dialog_new(gobj() ? GTK_WINDOW(gobj()) : nullptr,
                               preferences.text(Texts::couldNotComplete).c_str(), (*model_.error)->c_str()));
    Adwaita::attach(GTK_WINDOW(dialog), *this);
    adw_message_dialog_add_response(dialog, "ok", preferences.text(Texts::ok).c_str());
    adw_message_dialog_set_default_response(dialog, "ok");
    adw_message_dialog_set_close_response(dialog, "ok");
    g_signal_connect_swapped(dialog, "response",
                             G_CALLBACK(+[](MainWindow* self) { self->errorDismissed(); }), this);
    errorDialog_.set(dialog);
    gtk_window_present(GTK_WINDOW(dialog));
}

void MainWindow::errorDismissed() {
    errorDialog_.set(nullptr);
    model_.dismissError();
}

} // namespace TesselMail
