#include "TesselMail/Views/Panes.h"

#include <cmath>

namespace TesselMail {
namespace {

// Pixels.
constexpr int leastSources = 190;
constexpr int leastList = 240;
constexpr int leastReader = 350;
constexpr int widthStep = 20;

AdwLeaflet* makeLeaflet() {
    auto* const leaflet = ADW_LEAFLET(adw_leaflet_new());
    adw_leaflet_set_can_navigate_back(leaflet, TRUE);
    adw_leaflet_set_transition_type(leaflet, ADW_LEAFLET_TRANSITION_TYPE_SLIDE);
    return leaflet;
}

GtkWidget* object(Gtk::Widget& widget) {
    return widget.gobj();
}

} // namespace

Panes::Panes(AppModel& model, WindowState& state, PreparedView prepared)
    : model_(model), state_(state), sidebar_(model), list_(model), reader_(model, std::move(prepared)),
      sourcesPane_(sidebar_, leastSources, state.sidebarWidth),
      listPane_(list_, leastList, static_cast<int>(std::lround(model.mailListWidth))),
      readerPane_(reader_, leastReader, leastReader), outer_(makeLeaflet()), inner_(makeLeaflet()) {
    sourcesPane_.set_hexpand(false); // said plainly, because what is in them would like to grow
    listPane_.set_hexpand(false);
    readerPane_.set_hexpand(true);
    for (Gtk::Button* const button : {&backToSources_, &backToList_}) {
        button->set_icon_name("go-previous-symbolic");
        button->set_visible(false);
    }
    backToSources_.signal_clicked().connect(sigc::mem_fun(*this, &Panes::showSources));
    backToList_.signal_clicked().connect(sigc::mem_fun(*this, &Panes::showList));
    list_.header().packStart(backToSources_);
    reader_.header().packStart(backToList_);

    adw_leaflet_append(inner_, object(listPane_));
    letDrag(addLine(inner_), listPane_);
    adw_leaflet_append(inner_, object(readerPane_));
    adw_leaflet_append(outer_, object(sourcesPane_));
    letDrag(addLine(outer_), sourcesPane_);
    adw_leaflet_append(outer_, GTK_WIDGET(inner_));
    Adwaita::wrapped(inner_).set_hexpand(true);
    for (AdwLeaflet* const leaflet : {outer_, inner_})
        g_signal_connect_swapped(leaflet, "notify::folded",
                                 G_CALLBACK(+[](Panes* self) { self->showFolded(); }), this);
    adw_leaflet_set_visible_child(outer_, GTK_WIDGET(inner_));
    sidebar_.signalChosen().connect(sigc::mem_fun(*this, &Panes::showChosen));
    sidebar_.signalEntered().connect(sigc::mem_fun(*this, &Panes::enterSelected));
    list_.signalChosen().connect(sigc::mem_fun(*this, &Panes::showReader));
    list_.signalEntered().connect(sigc::mem_fun(*this, &Panes::read));
    showFolded();
}

Panes::~Panes() {
    g_signal_handlers_disconnect_by_data(outer_, this);
    g_signal_handlers_disconnect_by_data(inner_, this);
}

Gtk::Widget& Panes::addLine(AdwLeaflet* leaflet) {
    auto* const line = Gtk::make_managed<Gtk::Separator>(Gtk::Orientation::VERTICAL);
    line->add_css_class("pane-line");
    line->set_cursor("col-resize");
    adw_leaflet_page_set_navigatable(adw_leaflet_append(leaflet, object(*line)), FALSE);
    return *line;
}

// The line moves with its pane, so that what is left of the way is told anew after each step.
void Panes::letDrag(Gtk::Widget& line, Pane& pane) {
    const auto drag = Gtk::GestureDrag::create();
    drag->signal_drag_update().connect([&line, &pane](double x, double) {
        const bool mirrored = line.get_direction() == Gtk::TextDirection::RTL;
        pane.setWidth(pane.width() + static_cast<int>(std::lround(mirrored ? -x : x)));
    });
    drag->signal_drag_end().connect([this](double, double) { keepWidths(); });
    line.add_controller(drag);
}

void Panes::keepWidths() {
    state_.sidebarWidth = sourcesPane_.width();
    state_.listWidth = model_.mailListWidth = listPane_.width();
}

void Panes::showTexts() {
    const Preferences& preferences = model_.preferences();
    for (const auto& [button, text] :
         {std::pair<Gtk::Button&, const Phrase&>{backToSources_, Texts::openedFiles},
          {backToList_, Texts::messages}}) {
        Adwaita::setNameAndTooltip(button, preferences.text(text));
    }
}

// Every pane that stands at an edge of the window has the window's buttons of that edge.
void Panes::showFolded() {
    const bool sourcesApart = adw_leaflet_get_folded(outer_);
    const bool readerApart = adw_leaflet_get_folded(inner_);
    sidebar_.header().showWindowButtons(true, sourcesApart);
    list_.header().showWindowButtons(sourcesApart, readerApart);
    reader_.header().showWindowButtons(readerApart, true);
    backToSources_.set_visible(sourcesApart);
    backToList_.set_visible(readerApart);
    if (readerApart && showsLetter()) showReader();
}

// The toolkit takes the focus along to the pane that is turned to. Beside each other the panes leave it where
// people put it.
void Panes::turnTo(AdwLeaflet* leaflet, Gtk::Widget& pane) {
    const Gtk::Root* const root = pane.get_root();
    GtkWidget* const focus = root ? gtk_root_get_focus(const_cast<GtkRoot*>(root->gobj())) : nullptr;
    adw_leaflet_set_visible_child(leaflet, object(pane));
    if (focus && !adw_leaflet_get_folded(leaflet) && !gtk_widget_has_focus(focus))
        gtk_widget_grab_focus(focus);
}

void Panes::showSources() {
    turnTo(outer_, sourcesPane_);
    if (isFolded()) sidebar_.focusSources();
}

void Panes::showMessages() {
    turnTo(outer_, Adwaita::wrapped(inner_));
    turnTo(inner_, listPane_);
}

void Panes::showList() {
    showMessages();
    if (isFolded()) list_.focusList();
}

void Panes::showReader() {
    turnTo(outer_, Adwaita::wrapped(inner_));
    turnTo(inner_, readerPane_);
    if (adw_leaflet_get_folded(inner_)) reader_.focusBody();
}

void Panes::showSelected() {
    if (sidebar_.isChoosing()) return; // people walk through the sources: Return or a click goes on
    if (!model_.active()) return showMessages();
    const bool placed = sidebar_.holdsFocus() || holdsFocus(listPane_) || holdsFocus(readerPane_);
    showChosen();
    if (!placed && !isFolded()) list_.focusList();
}

void Panes::showChosen() {
    showsLetter() ? showReader() : showList();
}

void Panes::enterSelected() {
    showChosen();
    if (!isFolded()) list_.focusList();
}

bool Panes::isFolded() const {
    return adw_leaflet_get_folded(outer_) || adw_leaflet_get_folded(inner_);
}

// Whether the selected collection is a single message, of which the list tells nothing more.
bool Panes::showsLetter() const {
    const MailCore::MailCollection* const collection = model_.active();
    return collection && collection->entries.size() == 1 && !collection->isIndexing;
}

bool Panes::holdsFocus(const Gtk::Widget& pane) const {
    const auto* const root = Adwaita::wrapped(outer_).get_root();
    const Gtk::Widget* const focus = root ? root->get_focus() : nullptr;
    return focus && focus->is_ancestor(const_cast<Gtk::Widget&>(pane));
}

Panes::Place Panes::focused() const {
    return holdsFocus(sourcesPane_) ? Place::sources : holdsFocus(listPane_) ? Place::list : Place::reader;
}

void Panes::read() {
    showReader();
    reader_.focusBody();
}

void Panes::goBack() {
    if (adw_leaflet_get_folded(inner_) && adw_leaflet_get_visible_child(inner_) == object(readerPane_))
        return showList();
    if (adw_leaflet_get_folded(outer_)) showSources();
}

void Panes::moveFocus(int steps) {
    constexpr int count = 3;
    focus(static_cast<Place>((static_cast<int>(focused()) + steps + count) % count));
}

void Panes::widen(int steps) {
    const Place place = focused();
    Pane& pane = place == Place::sources ? sourcesPane_ : listPane_;
    pane.setWidth(pane.width() + (place == Place::reader ? -steps : steps) * widthStep);
    keepWidths();
}

void Panes::focus(Place place) {
    switch (place) {
    case Place::sources: showSources(); return sidebar_.focusSources();
    case Place::list: showMessages(); return list_.focusList();
    case Place::reader: return read();
    }
}

} // namespace TesselMail
