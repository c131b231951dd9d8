#include "TesselMail/Views/AdwaitaWidgets.h"

#include "TesselMail/Views/Actions.h"

#include <cstring>

namespace TesselMail::Adwaita {
namespace {

constexpr std::size_t longTooltip = 100; // bytes

bool isOpen(GtkWidget* widget) {
    GtkPopover* const menu =
        GTK_IS_MENU_BUTTON(widget) ? gtk_menu_button_get_popover(GTK_MENU_BUTTON(widget)) : nullptr;
    return menu && gtk_widget_get_visible(GTK_WIDGET(menu));
}

// The toolkit measures its own label before it has a style, and then breaks lines too early.
void fill(GtkTooltip* tooltip, const char* text) {
    auto* const label = GTK_LABEL(gtk_label_new(text));
    if (std::strlen(text) > longTooltip) {
        gtk_label_set_wrap(label, TRUE);
        gtk_label_set_wrap_mode(label, PANGO_WRAP_WORD_CHAR);
        gtk_label_set_max_width_chars(label, 60);
    }
    gtk_tooltip_set_custom(tooltip, GTK_WIDGET(label));
}

gboolean answerTooltip(GtkWidget* widget, int, int, gboolean, GtkTooltip* tooltip, gpointer) {
    const char* const text = gtk_widget_get_tooltip_text(widget);
    if (!text || isOpen(widget)) return FALSE;
    fill(tooltip, text);
    return TRUE;
}

} // namespace

void setName(Gtk::Widget& widget, const std::string& name) {
    // The toolkit puts a name of what is inside behind the button's own.
    Gtk::Widget* const inner = GTK_IS_MENU_BUTTON(widget.gobj()) ? widget.get_first_child() : nullptr;
    if (inner) return setName(*inner, name);
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(),
                                   -1);
}

void setTooltip(Gtk::Widget& widget, const std::string& text) {
    const bool answers = widget.get_has_tooltip();
    widget.set_tooltip_text(text);
    if (!answers) g_signal_connect(widget.gobj(), "query-tooltip", G_CALLBACK(answerTooltip), nullptr);
}

void showTooltip(const Glib::RefPtr<Gtk::Tooltip>& tooltip, const std::string& text) {
    fill(tooltip->gobj(), text.c_str());
}

void setNameAndTooltip(Gtk::Widget& widget, const std::string& name) {
    setTooltip(widget, name);
    setName(widget, name);
}

// The role is a property of its construction, and may be set as long as nobody has asked for it.
void makeLive(Gtk::Widget& widget, Live how) {
    const GtkAccessibleRole role =
        how == Live::alert ? GTK_ACCESSIBLE_ROLE_ALERT : GTK_ACCESSIBLE_ROLE_STATUS;
    g_object_set(widget.gobj(), "accessible-role", role, nullptr);
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
    gtk_actionable_set_action_name(GTK_ACTIONABLE(button_), Actions::open.path);
}

void OpenButton::setTexts(const std::string& help, const std::string& menuHelp,
                          const Glib::RefPtr<Gio::MenuModel>& menu) {
    setTooltip(widget(), help);
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

void StatusPage::showScrollbar() {
    for (GtkWidget* at = GTK_WIDGET(page_); at; at = gtk_widget_get_first_child(at))
        if (GTK_IS_SCROLLED_WINDOW(at))
            return gtk_scrolled_window_set_overlay_scrolling(GTK_SCROLLED_WINDOW(at), FALSE);
}

} // namespace TesselMail::Adwaita
