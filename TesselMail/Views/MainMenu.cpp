#include "TesselMail/Views/MainMenu.h"

namespace TesselMail {

Glib::RefPtr<Gio::Menu> openMenu(const Preferences& preferences) {
    const auto menu = Gio::Menu::create();
    menu->append(preferences.text(Texts::open), "win.open");
    menu->append(preferences.text(Texts::openFolder), "win.open-folder");
    return menu;
}

Glib::RefPtr<Gio::Menu> mainMenu(const Preferences& preferences) {
    const auto files = Gio::Menu::create();
    files->append(preferences.text(Texts::closeAll), "win.close-all");
    files->append(preferences.text(Texts::exportOriginal), "win.export-original");
    files->append(preferences.text(Texts::showPlainText), "win.plain-text");
    const auto application = Gio::Menu::create();
    application->append(preferences.text(Texts::settings), "win.settings");
    application->append(preferences.text(Texts::keyboardShortcuts), "win.shortcuts");
    application->append(preferences.text(Texts::about), "app.about");
    application->append(preferences.text(Texts::quit), "app.quit");

    const auto menu = Gio::Menu::create();
    menu->append_section(openMenu(preferences));
    menu->append_section(files);
    menu->append_section(application);
    return menu;
}

} // namespace TesselMail
