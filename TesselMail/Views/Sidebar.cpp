#include "TesselMail/Views/Sidebar.h"

#include "MailCore/Model/SourceKinds.h"
#include "TesselMail/Views/Actions.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/MainMenu.h"

#include <algorithm>
#include <utility>

namespace TesselMail {

// One open source: its name, how many messages it has, and a button that closes it.
class Sidebar::Row : public Gtk::ListBoxRow {
public:
    Row(AppModel& model, AppModel::CollectionID id) : model_(model), id_(id) {
        name_.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
        name_.set_xalign(0);
        count_.set_xalign(0);
        count_.add_css_class("caption");
        count_.add_css_class("dim-label");
        count_.add_css_class("numeric");
        texts_.set_hexpand(true);
        texts_.set_valign(Gtk::Align::CENTER);
        texts_.append(name_);
        texts_.append(count_);
        close_.set_icon_name("window-close-symbolic");
        close_.add_css_class("flat");
        close_.add_css_class("circular");
        close_.add_css_class("row-close");
        close_.set_valign(Gtk::Align::CENTER);
        close_.signal_clicked().connect(sigc::mem_fun(*this, &Row::close));
        content_.append(icon_);
        content_.append(texts_);
        content_.append(close_);
        set_child(content_);
        add_css_class("source-row");

        const auto keys = Gtk::ShortcutController::create();
        keys->add_shortcut(
            Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string("Delete"),
                                  Gtk::CallbackAction::create(sigc::mem_fun(*this, &Row::closeByKey))));
        add_controller(keys);
    }

    AppModel::CollectionID id() const noexcept { return id_; }

    void show(const MailCore::MailCollection& collection, const Preferences& preferences) {
        const bool archive = MailCore::SourceKinds::holdsMany(collection.kind);
        icon_.set_from_icon_name(archive ? "package-x-generic-symbolic" : "mail-unread-symbolic");
        const std::string name = displayedName(collection.url);
        const std::string count =
            std::to_string(collection.entries.size()) + preferences.text(Texts::messageCount);
        name_.set_text(name);
        count_.set_text(count);
        const std::string place = collection.url.isFile() ? displayedPath(collection.url) : name;
        Adwaita::setTooltip(*this, place); // which is also taken for the description, with all its marks
        gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                       spoken(place).c_str(), -1);
        Adwaita::setTooltip(close_, preferences.text(Texts::closeFile));
        gtk_accessible_update_property(GTK_ACCESSIBLE(gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       (spoken(name) + ", " + count).c_str(), -1);
        gtk_accessible_update_property(GTK_ACCESSIBLE(close_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       (preferences.text(Texts::closeFile) + " " + spoken(name)).c_str(), -1);
    }

    // The row goes with its collection: whatever handles the event must be done with it first.
    void close() {
        Glib::signal_idle().connect_once(sigc::bind(
            [](AppModel* model, AppModel::CollectionID id) { model->closeCollection(id); }, &model_, id_));
    }

private:
    bool closeByKey(Gtk::Widget&, const Glib::VariantBase&) {
        close();
        return true;
    }

    AppModel& model_;
    AppModel::CollectionID id_;
    Gtk::Box content_{Gtk::Orientation::HORIZONTAL, 10};
    Gtk::Image icon_;
    Gtk::Box texts_{Gtk::Orientation::VERTICAL, 1};
    Gtk::Label name_;
    Gtk::Label count_;
    Gtk::Button close_;
};

Sidebar::Sidebar(AppModel& model) : Gtk::Box(Gtk::Orientation::VERTICAL), model_(model) {
    add_css_class("sidebar-pane");
    menu_.set_icon_name("open-menu-symbolic");
    menu_.set_primary(true);
    header_.packStart(open_.widget());
    header_.packEnd(menu_);
    header_.hideTitle(); // what the window is called is no news here
    append(header_.widget());

    captureHeading_.set_xalign(0);
    captureHeading_.add_css_class("sidebar-heading");
    capture_.set_xalign(0);
    capture_.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
    capture_.add_css_class("captured-link");
    append(captureHeading_);
    append(capture_);
    heading_.set_xalign(0);
    heading_.add_css_class("sidebar-heading");
    append(heading_);

    list_.add_css_class("navigation-sidebar");
    list_.set_selection_mode(Gtk::SelectionMode::SINGLE);
    list_.signal_row_selected().connect(sigc::mem_fun(*this, &Sidebar::choose));
    list_.signal_row_activated().connect([this](Gtk::ListBoxRow*) { chosen_.emit(); });
    list_.onEnter([this] { return focusRow(); });
    setUpMenu();
    scroller_.set_child(list_);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller_.set_vexpand(true);
    append(scroller_);

    openIcon_.set_from_icon_name("list-add-symbolic");
    openContent_.append(openIcon_);
    openContent_.append(openLabel_);
    openFiles_.set_child(openContent_);
    openFiles_.add_css_class("flat");
    openFiles_.set_hexpand(true);
    openFiles_.signal_clicked().connect(sigc::mem_fun(model_, &AppModel::chooseFiles));
    settings_.set_icon_name("emblem-system-symbolic");
    settings_.add_css_class("flat");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(settings_.gobj()), Actions::settings.path);
    footer_.set_margin(6);
    footer_.append(openFiles_);
    footer_.append(settings_);
    append(footer_);

    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &Sidebar::showCollections));
    model_.selectedCollection.signalChanged().connect(sigc::mem_fun(*this, &Sidebar::showSelection));
    model_.capture.signalChanged().connect(sigc::mem_fun(*this, &Sidebar::showCapture));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &Sidebar::showTexts));
    showTexts();
}

Sidebar::~Sidebar() {
    rowMenu_.unparent();
}

void Sidebar::setUpMenu() {
    rowMenu_.set_parent(list_);
    rowMenu_.set_has_arrow(false);
    rowMenu_.set_halign(Gtk::Align::START);
    const auto actions = Gio::SimpleActionGroup::create();
    actions->add_action("close", sigc::mem_fun(*this, &Sidebar::closeMenuRow));
    list_.insert_action_group("source", actions);

    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->signal_pressed().connect(sigc::mem_fun(*this, &Sidebar::showMenu));
    list_.add_controller(click);
    const auto keys = Gtk::ShortcutController::create();
    keys->add_shortcut(
        Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string("<Shift>F10|Menu"),
                              Gtk::CallbackAction::create(sigc::mem_fun(*this, &Sidebar::showMenuByKey))));
    list_.add_controller(keys);
}

void Sidebar::showMenu(int, double x, double y) {
    auto* const row = static_cast<Row*>(list_.get_row_at_y(static_cast<int>(y)));
    if (!row) return;
    menuRow_ = row->id();
    rowMenu_.set_pointing_to(Gdk::Rectangle(static_cast<int>(x), static_cast<int>(y), 1, 1));
    rowMenu_.popup();
}

bool Sidebar::showMenuByKey(Gtk::Widget&, const Glib::VariantBase&) {
    auto* const row = dynamic_cast<Row*>(get_root()->get_focus());
    if (!row) return false;
    const Gtk::Allocation place = row->get_allocation();
    showMenu(1, place.get_x() + 24, place.get_y() + place.get_height() / 2.0);
    return true;
}

// The menu gives the focus back to its row, which is gone then: the next one takes it when the menu is
// closed.
void Sidebar::closeMenuRow() {
    if (!menuRow_) return;
    model_.closeCollection(*std::exchange(menuRow_, std::nullopt));
    Glib::signal_idle().connect_once(sigc::mem_fun(*this, &Sidebar::focusWhatIsLeft));
}

void Sidebar::focusWhatIsLeft() {
    if (!shown_.empty()) focusSources();
}

void Sidebar::showTexts() {
    const Preferences& preferences = model_.preferences();
    const auto rowMenu = Gio::Menu::create();
    rowMenu->append(preferences.text(Texts::closeFile), "source.close");
    rowMenu_.set_menu_model(rowMenu);
    heading_.set_text(preferences.text(Texts::openedFiles));
    openLabel_.set_text(preferences.text(Texts::openFiles));
    open_.setTexts(preferences.text(Texts::openHelp), preferences.text(Texts::openMore),
                   openMenu(preferences));
    Adwaita::setName(openFiles_, preferences.text(Texts::openFiles));
    Adwaita::setNameAndTooltip(settings_, preferences.text(Texts::settings));
    Adwaita::setNameAndTooltip(menu_, preferences.text(Texts::menu));
    menu_.set_menu_model(mainMenu(preferences));
    gtk_accessible_update_property(GTK_ACCESSIBLE(list_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences.text(Texts::openedFiles).c_str(), -1);
    captureHeading_.set_text(preferences.text(Texts::capturedLink));
    showCapture();
    showCollections();
}

void Sidebar::showCapture() {
    const auto& capture = *model_.capture;
    captureHeading_.set_visible(capture.has_value());
    capture_.set_visible(capture.has_value());
    if (!capture) return;
    const std::string& name = capture->subject.empty() ? capture->to : capture->subject;
    capture_.set_text(name.empty() ? model_.preferences().text(Texts::emailLink) : displayed(name));
}

void Sidebar::addRow(AppModel::CollectionID id) {
    auto* const row = Gtk::make_managed<Row>(model_, id);
    g_signal_connect_data( // by key: a click activates the list's row, not the row
        row->gobj(), "activate", G_CALLBACK(+[](GtkListBoxRow*, Sidebar* self) { self->entered_.emit(); }),
        this, nullptr, G_CONNECT_AFTER);
    list_.append(*row);
}

// Rows are few; they are made anew only when other sources are open, so that a growing one keeps its row.
void Sidebar::showCollections() {
    const bool before = std::exchange(updating_, true);
    const auto& collections = *model_.collections;
    std::vector<AppModel::CollectionID> ids;
    for (const auto& collection : collections) ids.push_back(collection.id);
    const bool focused = list_.holdsFocus();
    if (ids != shown_) {
        while (Gtk::ListBoxRow* const row = list_.get_row_at_index(0)) list_.remove(*row);
        for (const auto& id : ids) addRow(id);
        shown_ = std::move(ids);
    }
    for (std::size_t at = 0; at < collections.size(); ++at)
        static_cast<Row*>(list_.get_row_at_index(static_cast<int>(at)))
            ->show(collections[at], model_.preferences());
    updating_ = before;
    showSelection();
    if (focused && !list_.holdsFocus()) focusSources(); // it went with its row
}

void Sidebar::showSelection() {
    const bool before = std::exchange(updating_, true);
    const auto found =
        *model_.selectedCollection ? std::ranges::find(shown_, **model_.selectedCollection) : shown_.end();
    if (found == shown_.end())
        list_.unselect_all();
    else
        list_.select_row(*list_.get_row_at_index(static_cast<int>(found - shown_.begin())));
    updating_ = before;
}

void Sidebar::focusSources() {
    if (!focusRow()) openFiles_.grab_focus();
}

// The list would choose the row that gets the focus: a captured link would go because somebody passed by.
bool Sidebar::focusRow() {
    Gtk::ListBoxRow* const selected = list_.get_selected_row();
    Gtk::ListBoxRow* const row = selected ? selected : list_.get_row_at_index(0);
    const bool before = std::exchange(updating_, true);
    const bool focused = row && row->grab_focus();
    if (!selected) list_.unselect_all();
    updating_ = before;
    return focused;
}

void Sidebar::choose(Gtk::ListBoxRow* row) {
    if (updating_ || !row) return;
    const AppModel::CollectionID id = static_cast<Row*>(row)->id();
    if (*model_.selectedCollection == id) return;
    const bool before = std::exchange(choosing_, true);
    model_.selectCollection(id);
    choosing_ = before;
}

} // namespace TesselMail
