#include "Lock/NetworkLock.h"
#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Model/ApplicationID.h"
#include "TesselMail/Model/ArchiveWork.h"
#include "TesselMail/Model/WindowState.h"
#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/NativeDesktop.h"
#include "TesselMail/Platform/NativeFilePanels.h"
#include "TesselMail/Views/Actions.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/MainWindow.h"
#include "TesselMail/Views/Shortcuts.h"

#include <adwaita.h>
#include <gtkmm.h>

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace TesselMail {
namespace {

// The running application: one per session. A second start hands its files to the first and ends.
class Application : public Gtk::Application {
public:
    Application()
        : Gtk::Application(applicationID, Gio::Application::Flags::HANDLES_OPEN),
          preferences_(Preferences::ofUser()), model_(AppModel::create(preferences_, panels_, desktop_)) {
        model_->setNewestFirst(state_.newestFirst);
        if (state_.listWidth) model_->mailListWidth = *state_.listWidth;
        desktop_.attach([this] { present(); });
    }

protected:
    void on_startup() override {
        Gtk::Application::on_startup();
        adw_init();
        networkLocked_ = lockNetwork(); // the display is connected, and no web view has been made
        Gtk::Window::set_default_icon_name(applicationID);
        add_action(Actions::about.name(), sigc::mem_fun(*this, &Application::showAbout));
        add_action(Actions::quit.name(), sigc::mem_fun(*this, &Application::leave));
        setUpShortcuts(*this);
    }

    void on_activate() override { present(); }

    // The session may end the program with its window open.
    void on_shutdown() override {
        model_->closeAll();
        takeWindowApart();
        Gtk::Application::on_shutdown();
    }

    void on_open(const type_vec_files& files, const Glib::ustring&) override {
        std::vector<MailCore::URL> urls;
        for (const auto& file : files) {
            if (const std::string path = file->get_path(); !path.empty())
                urls.push_back(MailCore::URL::file(path));
            else if (const auto url = MailCore::URL::parse(file->get_uri()))
                urls.push_back(*url);
            else if (isMailLink(file->get_uri()))
                return receive(file->get_uri());
        }
        model_->open(urls);
        present(); // with what is being opened, rather than with the welcome first
    }

private:
    void present() {
        if (!window_) {
            window_ = std::make_unique<MainWindow>(*model_, state_);
            // Before the toolkit's own answer, which destroys the window under its views.
            window_->signal_close_request().connect(sigc::mem_fun(*this, &Application::closeWindow), false);
            panels_.attach(window_.get());
            add_window(*window_);
            stayForLinks(false);
            if (!networkLocked_ && !std::exchange(toldOfNetwork_, true))
                window_->tell(preferences_.text(Texts::networkNotLocked));
        }
        window_->present();
    }

    // Links are written by hand in many a page: what is no address by the letter is shown all the same.
    static bool isMailLink(const std::string& text) {
        return g_ascii_strncasecmp(text.c_str(), "mailto:", 7) == 0;
    }

    void receive(const std::string& link) {
        present();
        model_->receive(link);
    }

    // The window is in the middle of its signal: it goes when that is over, and the program with it unless
    // mail links come here.
    bool closeWindow() {
        window_->set_visible(false);
        model_->closeAll();
        if (desktop_.handlesMail()) stayForLinks(true);
        InterfaceThread::post([this] { takeWindowApart(); });
        return true;
    }

    void takeWindowApart() {
        panels_.attach(nullptr);
        window_.reset();
    }

    // Without a window, for as long as mail links come here.
    void stayForLinks(bool stay) {
        if (stay == handlerChanged_.connected()) return;
        handlerChanged_.disconnect();
        if (!stay) return release();
        hold();
        handlers_ = Gio::AppInfoMonitor::get(); // tells of changes while somebody holds it
        handlerChanged_ = handlers_->signal_changed().connect([this] {
            if (!desktop_.handlesMail()) stayForLinks(false);
        });
    }

    void leave() {
        if (window_) closeWindow();
        InterfaceThread::post([this] { quit(); });
    }

    void showAbout() {
        if (!window_) return;
        const auto window = ADW_ABOUT_WINDOW(adw_about_window_new());
        adw_about_window_set_application_name(window, preferences_.text(Texts::applicationName).c_str());
        adw_about_window_set_application_icon(window, applicationID);
        adw_about_window_set_version(window, TESSEL_VERSION);
        // Under the name, where it is read without looking for it.
        if (networkLocked_)
            adw_about_window_set_developer_name(window, preferences_.text(Texts::networkLocked).c_str());
        adw_about_window_set_comments(window, preferences_.text(Texts::aboutText).c_str());
        Adwaita::attach(GTK_WINDOW(window), *window_);
        gtk_window_set_modal(GTK_WINDOW(window), TRUE);
        gtk_window_present(GTK_WINDOW(window));
    }

    Preferences preferences_;
    WindowState state_ = WindowState::ofUser();
    NativeFilePanels panels_;
    NativeDesktop desktop_{applicationID};
    std::shared_ptr<AppModel> model_;
    bool networkLocked_ = false; // by the system, for good
    bool toldOfNetwork_ = false; // that it is not
    std::unique_ptr<MainWindow> window_;
    Glib::RefPtr<Gio::AppInfoMonitor> handlers_;
    sigc::connection handlerChanged_; // while the program stays for mail links
};

bool hasGraphicsCard() {
    std::error_code ignored; // no such folder
    for (const auto& device : std::filesystem::directory_iterator("/dev/dri", ignored))
        if (device.path().filename().native().starts_with("render")) return true;
    return std::filesystem::exists("/dev/nvidiactl", ignored);
}

} // namespace
} // namespace TesselMail

int main(int argc, char** argv) {
    // Before anything of GIO is used: links handed over by the system keep every byte this way.
    g_setenv("GIO_USE_VFS", "local", TRUE);
    // Without a graphics card the toolkit would have GL imitated by the processor, at twice the time for each
    // picture and 80 MB; the processor draws better by itself.
    if (!TesselMail::hasGraphicsCard()) g_setenv("GSK_RENDERER", "cairo", FALSE);
    // GTK sets the C library's locale; the one of C++ stays neutral.
    Glib::set_init_to_users_preferred_locale(false);
    int status = 0;
    {
        TesselMail::Application application;
        status = application.run(argc, argv);
    }
    TesselMail::ArchiveWork::finish();
    return status;
}
