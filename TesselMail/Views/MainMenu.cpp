#include "TesselMail/Views/MainMenu.h"

#include "TesselMail/Views/Actions.h"

namespace TesselMail {

Glib::RefPtr<Gio::Menu> openMenu(const Preferences& preferences) {
    const auto menu = Gio::Menu::create();
    menu->append(preferences.text(Texts::open), Actions::open.path);
    menu->append(preferences.text(Texts::openFolder), Actions::openFolder.path);
    return menu;
}

Glib::RefPtr<Gio::Menu> mainMenu(const Preferences& preferences) {
    const auto files = Gio::Menu::create();
    files->append(preferences.text(Texts::closeAll), Actions::closeAll.path);
    files->append(preferences.text(Texts::exportOriginal), Actions::exportOriginal.path);
    files->append(preferences.text(Texts::showPlainText), Actions::plainText.path);
    const auto application = Gio::Menu::create();
    application->append(preferences.text(Texts::settings), Actions::settings.path);
    application->append(preferences.text(Texts::keyboardShortcuts), Actions::shortcuts.path);
    application->append(preferences.text(Texts::about), Actions::about.path);
    application->append(preferences.text(Texts::quit), Actions::quit.path);

    const auto menu = Gio::Menu::create();
    menu->append_section(openMenu(preferences));
    menu->append_section(files);
    menu->append_section(application);
    return menu;
}

} // namespace TesselMail
