#include "TesselMail/Views/WelcomeView.h"

#include "TesselMail/Views/Actions.h"
#include "TesselMail/Views/MainMenu.h"

namespace TesselMail {

WelcomeView::WelcomeView(AppModel& model) : Gtk::Box(Gtk::Orientation::VERTICAL), model_(model) {
    add_css_class("welcome");
    menu_.set_icon_name("open-menu-symbolic");
    menu_.set_primary(true);
    header_.packStart(openButton_.widget());
    header_.packEnd(menu_);
    header_.hideTitle();
    append(header_.widget());

    open_.set_halign(Gtk::Align::CENTER);
    open_.add_css_class("pill");
    open_.add_css_class("suggested-action");
    adw_button_content_set_icon_name(openContent_, "folder-symbolic");
    gtk_button_set_child(open_.gobj(), GTK_WIDGET(openContent_));
    open_.signal_clicked().connect(sigc::mem_fun(model_, &AppModel::chooseFiles));
    drop_.add_css_class("dim-label");
    drop_.set_wrap(true);
    drop_.set_justify(Gtk::Justification::CENTER);
    formats_.add_css_class("caption");
    formats_.add_css_class("dim-label");
    formats_.set_wrap(true);
    formats_.set_justify(Gtk::Justification::CENTER);
    capture_.set_halign(Gtk::Align::CENTER);
    capture_.add_css_class("flat");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(capture_.gobj()), Actions::settings.path);
    actions_.append(open_);
    actions_.append(drop_);
    actions_.append(formats_);
    actions_.append(capture_);
    page_.setChild(actions_);
    page_.showScrollbar();
    append(page_.widget());

    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &WelcomeView::showTexts));
    showTexts();
}

void WelcomeView::showTexts() {
    const Preferences& preferences = model_.preferences();
    openButton_.setTexts(preferences.text(Texts::openHelp), preferences.text(Texts::openMore),
                         openMenu(preferences));
    Adwaita::setNameAndTooltip(menu_, preferences.text(Texts::menu));
    menu_.set_menu_model(mainMenu(preferences));
    page_.setTexts(preferences.text(Texts::applicationName), preferences.text(Texts::welcomeLine));
    adw_button_content_set_label(openContent_, preferences.text(Texts::openMail).c_str());
    capture_.set_label(preferences.text(Texts::captureSetUp));
    drop_.set_text(preferences.text(Texts::welcomeDrop));
    formats_.set_text(preferences.text(Texts::welcomeFormats));
}

} // namespace TesselMail
