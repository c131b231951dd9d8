#include "TesselMail/Platform/NativeFilePanels.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <utility>

namespace TesselMail {
namespace {

using MailCore::URL;

Glib::RefPtr<Gtk::FileFilter> filterOf(const OpenPanel& panel) {
    const auto filter = Gtk::FileFilter::create();
    filter->set_name(panel.filterName);
    for (const std::string& extension : panel.extensions) filter->add_suffix(extension);
    for (const std::string& name : panel.names) filter->add_pattern(name);
    return filter;
}

// The panel's list holds its files by their interface alone, which the C++ binding cannot wrap as objects.
std::vector<URL> chosenFiles(Gtk::FileChooserNative& chooser) {
    const auto list =
        ObjectRef<GListModel>::adopt(gtk_file_chooser_get_files(GTK_FILE_CHOOSER(chooser.gobj())));
    std::vector<URL> urls;
    for (guint at = 0; at < g_list_model_get_n_items(list.get()); ++at) {
        const auto file = ObjectRef<GFile>::adopt(G_FILE(g_list_model_get_item(list.get(), at)));
        if (const char* const path = g_file_peek_path(file.get())) urls.push_back(URL::file(path));
    }
    return urls;
}

// The panels add what is chosen to the desktop's list of recent files, at some later time. The manager of the
// list writes and reads it in this handler alone; without the handler the list in the user's folder stays as
// it is.
void leaveRecentFilesAlone() {
    auto* const manager = static_cast<GtkRecentManagerClass*>(g_type_class_ref(GTK_TYPE_RECENT_MANAGER));
    manager->changed = [](GtkRecentManager*) {};
    g_type_class_unref(manager);
}

// Where the panel is a window of the toolkit, it answers to the application's keys like every other window.
void answerToKeys(Gtk::Window& parent) {
    for (Gtk::Window* const window : Gtk::Window::list_toplevels())
        if (GTK_IS_FILE_CHOOSER(window->gobj()) && window->get_transient_for() == &parent)
            gtk_window_set_application(window->gobj(), gtk_window_get_application(parent.gobj()));
}

} // namespace

NativeFilePanels::NativeFilePanels() {
    leaveRecentFilesAlone();
}

NativeFilePanels::~NativeFilePanels() {
    if (shown_) shown_->hide();
}

void NativeFilePanels::attach(Gtk::Window* window) {
    if (window != window_) leave();
    window_ = window;
}

void NativeFilePanels::run(Glib::RefPtr<Gtk::FileChooserNative> chooser, Finish finish) {
    if (shown_) return InterfaceThread::post([finish] { finish({}); });
    shown_ = std::move(chooser);
    finish_ = std::move(finish);
    if (window_) shown_->set_transient_for(*window_);
    shown_->set_modal(true);
    if (folder_ && folder_->query_exists()) shown_->set_current_folder(folder_);
    shown_->signal_response().connect(sigc::mem_fun(*this, &NativeFilePanels::respond));
    shown_->show();
    if (window_) answerToKeys(*window_);
}

// The answer is posted: the panel is still in the middle of its signal. At a second response of the same
// panel nobody waits any more.
void NativeFilePanels::respond(int response) {
    if (!finish_) return;
    if (response == Gtk::ResponseType::ACCEPT) folder_ = shown_->get_current_folder();
    auto chosen = response == Gtk::ResponseType::ACCEPT ? chosenFiles(*shown_) : std::vector<URL>();
    InterfaceThread::post([panel = std::exchange(shown_, nullptr), finish = std::exchange(finish_, nullptr),
                           chosen = std::move(chosen)] { finish(chosen); });
}

void NativeFilePanels::leave() {
    if (!shown_) return;
    shown_->hide();
    respond(Gtk::ResponseType::CANCEL);
}

Later<std::vector<URL>> NativeFilePanels::open(OpenPanel panel) {
    return Later<std::vector<URL>>([this, panel = std::move(panel)](auto finish) {
        const bool folder = panel.kind == OpenPanel::Kind::folder;
        const auto chooser = Gtk::FileChooserNative::create(
            panel.title, folder ? Gtk::FileChooser::Action::SELECT_FOLDER : Gtk::FileChooser::Action::OPEN,
            panel.accept, panel.cancel);
        chooser->set_select_multiple(true);
        if (!folder) {
            chooser->add_filter(filterOf(panel));
            const auto every = Gtk::FileFilter::create();
            every->set_name(panel.everyName);
            every->add_pattern("*");
            chooser->add_filter(every);
        }
        run(chooser, [finish](std::vector<URL> chosen) { finish(std::move(chosen)); });
    });
}

Later<std::optional<URL>> NativeFilePanels::save(SavePanel panel) {
    return Later<std::optional<URL>>([this, panel = std::move(panel)](auto finish) {
        const auto chooser = Gtk::FileChooserNative::create(panel.title, Gtk::FileChooser::Action::SAVE,
                                                            panel.accept, panel.cancel);
        chooser->set_current_name(panel.name);
        run(chooser, [finish](std::vector<URL> chosen) {
            finish(chosen.empty() ? std::optional<URL>() : std::optional(chosen.front()));
        });
    });
}

} // namespace TesselMail
