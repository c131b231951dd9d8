#include "TesselMail/Views/AdwaitaWidgets.h"

namespace TesselMail::Adwaita {

void setName(Gtk::Widget& widget, const std::string& name) {
    // The toolkit puts a name of what is inside behind the button's own.
    Gtk::Widget* const inner = GTK_IS_MENU_BUTTON(widget.gobj()) ? widget.get_first_child() : nullptr;
    if (inner) return setName(*inner, name);
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(),
                                   -1);
}

void setNameAndTooltip(Gtk::Widget& widget, const std::string& name) {
    widget.set_tooltip_text(name);
    setName(widget, name);
}

void attach(GtkWindow* window, Gtk::Window& parent) {
    gtk_window_set_transient_for(window, parent.gobj());
    gtk_window_set_destroy_with_parent(window, TRUE);
    gtk_window_set_application(window, gtk_window_get_application(parent.gobj()));
}

HeaderBar::HeaderBar()
    : bar_(ADW_HEADER_BAR(adw_header_bar_new())), title_(ADW_WINDOW_TITLE(adw_window_title_new("", ""))) {
    adw_header_bar_set_title_widget(bar_, GTK_WIDGET(title_));
}

void HeaderBar::setTitle(const std::string& title, const std::string& subtitle) {
    adw_window_title_set_title(title_, title.c_str());
    adw_window_title_set_subtitle(title_, subtitle.c_str());
}

void HeaderBar::hideTitle() {
    gtk_widget_set_visible(GTK_WIDGET(title_), FALSE);
}

void HeaderBar::showWindowButtons(bool start, bool end) {
    adw_header_bar_set_show_start_title_buttons(bar_, start);
    adw_header_bar_set_show_end_title_buttons(bar_, end);
}

OpenButton::OpenButton() : button_(ADW_SPLIT_BUTTON(adw_split_button_new())) {
    adw_split_button_set_icon_name(button_, "document-open-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(button_), "win.open");
}

void OpenButton::setTexts(const std::string& help, const std::string& menuHelp,
                          const Glib::RefPtr<Gio::MenuModel>& menu) {
    gtk_widget_set_tooltip_text(GTK_WIDGET(button_), help.c_str());
    for (Gtk::Widget* half = widget().get_first_child(); half; half = half->get_next_sibling())
        if (GTK_IS_BUTTON(half->gobj()) || GTK_IS_MENU_BUTTON(half->gobj()))
            setName(*half, GTK_IS_MENU_BUTTON(half->gobj()) ? menuHelp : help);
    adw_split_button_set_dropdown_tooltip(button_, menuHelp.c_str());
    adw_split_button_set_menu_model(button_, menu->gobj());
}

StatusPage::StatusPage(const std::string& icon) : page_(ADW_STATUS_PAGE(adw_status_page_new())) {
    adw_status_page_set_icon_name(page_, icon.c_str());
    wrapped(page_).set_vexpand(true);
    wrapped(page_).set_hexpand(true);
}

// The page reads its texts as markup.
void StatusPage::setTexts(const std::string& title, const std::string& description) {
    adw_status_page_set_title(page_, Glib::Markup::escape_text(title).c_str());
    adw_status_page_set_description(page_, Glib::Markup::escape_text(description).c_str());
}

} // namespace TesselMail::Adwaita
