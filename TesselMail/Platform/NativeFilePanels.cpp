#include "TesselMail/Platform/NativeFilePanels.h"

#include "MailCore/Platform/Text.h"
#include "TesselMail/Platform/InterfaceThread.h"

#include <utility>

namespace TesselMail {
namespace {

using MailCore::URL;

Glib::RefPtr<Gtk::FileFilter> filterOf(const OpenPanel& panel) {
    const auto filter = Gtk::FileFilter::create();
    filter->set_name(panel.filterName);
    for (const std::string& extension : panel.extensions) filter->add_suffix(extension);
    // A mailbox of a folder's own is a file without an extension.
    filter->add_pattern("mbox");
    return filter;
}

std::vector<URL> chosenFiles(Gtk::FileChooserNative& chooser) {
    std::vector<URL> urls;
    const auto files = chooser.get_files();
    for (guint at = 0; at < files->get_n_items(); ++at)
        if (const auto file = std::dynamic_pointer_cast<Gio::File>(files->get_object(at)))
            if (const std::string path = file->get_path(); !path.empty()) urls.push_back(URL::file(path));
    return urls;
}

} // namespace

// The answer is posted: the panel is still in the middle of its signal.
void NativeFilePanels::run(Glib::RefPtr<Gtk::FileChooserNative> chooser,
                           std::function<void(std::vector<URL>)> finish) {
    if (shown_) return InterfaceThread::post([finish] { finish({}); });
    shown_ = std::move(chooser);
    if (window_) shown_->set_transient_for(*window_);
    shown_->set_modal(true);
    shown_->signal_response().connect([this, finish](int response) {
        auto chosen = response == Gtk::ResponseType::ACCEPT ? chosenFiles(*shown_) : std::vector<URL>();
        InterfaceThread::post([this, finish, chosen = std::move(chosen)] {
            shown_.reset();
            finish(chosen);
        });
    });
    shown_->show();
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
