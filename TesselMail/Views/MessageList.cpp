#include "TesselMail/Views/MessageList.h"

#include "MailCore/Platform/Text.h"
#include "TesselMail/Views/DisplayText.h"
#include "TesselMail/Views/MessageRow.h"

#include <algorithm>
#include <utility>

namespace TesselMail {
namespace {

// A list view keeps about 200 row widgets around the row it scrolls to: this far from the end, all of them
// are rows that stay.
constexpr guint farFromLeaving = 320;

constexpr std::size_t longestQuery = 200; // characters shown

} // namespace

MessageList::MessageList(AppModel& model)
    : Gtk::Box(Gtk::Orientation::VERTICAL), model_(model), rows_(EntryRows::create()),
      selection_(Gtk::SingleSelection::create(rows_)) {
    add_css_class("list-pane");
    order_.set_icon_name("view-sort-descending-symbolic");
    order_.signal_toggled().connect(sigc::mem_fun(*this, &MessageList::changeOrder));
    header_.packEnd(order_);
    append(header_.widget());

    gtk_search_entry_set_search_delay(search_.gobj(), 0); // the model waits for a pause in typing
    search_.set_margin_start(8);
    search_.set_margin_end(8);
    search_.set_margin_bottom(8);
    search_.signal_search_changed().connect(sigc::mem_fun(*this, &MessageList::changeQuery));
    search_.signal_stop_search().connect(sigc::mem_fun(*this, &MessageList::leaveSearch));
    search_.signal_activate().connect(sigc::mem_fun(*this, &MessageList::enterResults));
    append(search_);
    searching_.set_xalign(0);
    searching_.set_wrap(true);
    searching_.set_margin_start(18);
    searching_.set_margin_bottom(6);
    searching_.add_css_class("caption");
    searching_.add_css_class("dim-label");
    Adwaita::makeLive(searching_, Adwaita::Live::status);
    append(searching_);

    notice_.set_wrap(true);
    notice_.set_xalign(0);
    notice_.add_css_class("notice");
    Adwaita::makeLive(notice_, Adwaita::Live::alert);
    noticeRevealer_.set_child(notice_);
    append(noticeRevealer_);

    selection_->set_autoselect(false);
    selection_->set_can_unselect(true);
    selection_->property_selected().signal_changed().connect(sigc::mem_fun(*this, &MessageList::select));
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect(sigc::mem_fun(*this, &MessageList::setUpRow));
    factory->signal_bind().connect(sigc::mem_fun(*this, &MessageList::bindRow));
    list_.set_factory(factory);
    list_.set_model(selection_);
    list_.add_css_class("message-list");
    list_.set_single_click_activate(false);
    list_.onEnter([this] { return focusSelected(); });
    list_.signal_activate().connect(sigc::mem_fun(*this, &MessageList::activate));

    scroller_.set_child(list_);
    scroller_.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    stack_.set_hhomogeneous(false);
    stack_.add(scroller_, "list");
    stack_.add(empty_.widget(), "empty");
    stack_.set_vexpand(true);
    append(stack_);

    model_.filteredEntries.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showEntries));
    model_.selectedCollection.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showEntries));
    model_.selectedEntry.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showSelection));
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showTitle));
    model_.collections.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showNotice));
    model_.newestFirst.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showOrder));
    model_.query.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showSearch));
    model_.searching.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showSearch));
    model_.error.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showTitle));
    model_.searchUnreadable.signalChanged().connect(sigc::mem_fun(*this, &MessageList::showNotice));
    model_.preferences().signalChanged().connect(sigc::mem_fun(*this, &MessageList::showTexts));
    today_.set_time_current();
    clock_ = Glib::signal_timeout().connect_seconds(sigc::mem_fun(*this, &MessageList::showNewDay), 60);
    showTexts();
}

// What was of today is of yesterday now.
bool MessageList::showNewDay() {
    Glib::Date today;
    today.set_time_current();
    if (std::exchange(today_, today) == today) return true;
    for (Gtk::Widget* item = list_.get_first_child(); item; item = item->get_next_sibling())
        if (auto* const row = dynamic_cast<MessageRow*>(item->get_first_child())) row->refresh();
    return true;
}

void MessageList::showTexts() {
    const Preferences& preferences = model_.preferences();
    Adwaita::setName(list_, preferences.text(Texts::messages));
    search_.property_placeholder_text() = preferences.text(Texts::searchMessages);
    gtk_accessible_update_property(GTK_ACCESSIBLE(search_.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   preferences.text(Texts::searchMessages).c_str(), -1);
    showOrder();
    showSearch();
    showEntries();
}

void MessageList::showSearch() {
    const bool before = std::exchange(updating_, true);
    if (search_.get_text().raw() != *model_.query) search_.set_text(*model_.query);
    updating_ = before;

    const Preferences& preferences = model_.preferences();
    const bool looking = !MailCore::Text::trimmed(*model_.query).empty();
    const bool found = looking && !*model_.searching && !model_.listPending();
    const bool elsewhere = looking && *model_.message && selectedPosition() == GTK_INVALID_LIST_POSITION;
    std::string text;
    if (found && !rows_->entries().empty())
        text = std::to_string(rows_->entries().size()) + preferences.text(Texts::messageCount);
    if (elsewhere) text += (text.empty() ? "" : "\n") + preferences.text(Texts::shownIsNoResult);
    if (*model_.searching) text = preferences.text(Texts::searching);
    searching_.set_text(text);
    searching_.set_visible(!text.empty());
}

void MessageList::changeQuery() {
    if (!updating_) model_.setQuery(search_.get_text());
}

// Escape takes the search back; a second one leaves the field.
void MessageList::leaveSearch() {
    if (search_.get_text().empty()) return focusList();
    search_.set_text("");
}

// Return goes from the field to what was found.
void MessageList::enterResults() {
    if (rows_->entries().empty()) return;
    if (selectedPosition() == GTK_INVALID_LIST_POSITION) model_.select(rows_->entries().front()->id);
    focusList();
}

void MessageList::showTitle() {
    const MailCore::MailCollection* const collection = model_.active();
    const Preferences& preferences = model_.preferences();
    header_.setTitle(preferences.text(Texts::messages),
                     collection ? displayedName(collection->url) : std::string());
    const std::string query(MailCore::Text::trimmed(*model_.query));
    empty_.setTexts(preferences.text(Texts::noMessages),
                    query.empty() ? query : displayed(query, longestQuery));
    const bool none = collection && rows_->entries().empty() && !model_.listPending();
    stack_.set_visible_child(none ? "empty" : "list");
}

void MessageList::showNotice() {
    const MailCore::MailCollection* const collection = model_.active();
    const bool limited = collection && collection->indexLimitReached;
    const bool interrupted = collection && collection->indexInterrupted;
    const Preferences& preferences = model_.preferences();
    std::string text;
    if (limited || interrupted) text = preferences.text(limited ? Texts::limitReached : Texts::interrupted);
    if (*model_.searchUnreadable > 0) {
        if (!text.empty()) text += "\n\n";
        text += std::to_string(*model_.searchUnreadable) + preferences.text(Texts::unreadable);
    }
    if (!text.empty()) notice_.set_text(text);
    noticeRevealer_.set_reveal_child(!text.empty());
}

void MessageList::showOrder() {
    const bool before = std::exchange(updating_, true);
    order_.set_active(*model_.newestFirst);
    const Preferences& preferences = model_.preferences();
    const std::string state = *model_.newestFirst ? preferences.text(Texts::newestFirst) : "";
    const std::string name = preferences.text(Texts::messageOrder);
    Adwaita::setTooltip(order_, state.empty() ? name : name + "\n" + state);
    Adwaita::setName(order_, name);
    gtk_accessible_update_property(GTK_ACCESSIBLE(order_.gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                   state.c_str(), -1);
    updating_ = before;
}

void MessageList::changeOrder() {
    if (!updating_) model_.setNewestFirst(order_.get_active());
}

// A row that was in view stays in view, wherever it went; a list filled anew shows its selected row, or else
// its beginning. Hits are shown from the first one on.
void MessageList::showEntries() {
    const bool before = std::exchange(updating_, true);
    const bool another =
        std::exchange(shownCollection_, *model_.selectedCollection) != *model_.selectedCollection;
    const bool focused = list_.holdsFocus();
    const std::string query(MailCore::Text::trimmed(*model_.query));
    const ArchiveWork::SharedList entries = model_.entries();
    const bool hits = !entries->empty() && std::exchange(shownQuery_, query) != query && !query.empty();
    const bool follow = !hits && (another || rows_->entries().empty() || selectionInView());
    // The selection would look for its row among all new ones; the model knows which it is.
    selection_->set_selected(GTK_INVALID_LIST_POSITION);
    rows_->show(entries, [this, follow] {
        const guint selected = follow ? selectedPosition() : GTK_INVALID_LIST_POSITION;
        const auto count = static_cast<guint>(rows_->entries().size());
        const guint last = count > farFromLeaving ? count - farFromLeaving : 0;
        bringIntoView(selected == GTK_INVALID_LIST_POSITION ? 0 : std::min(selected, last));
    });
    const guint selected = selectedPosition();
    selection_->set_selected(selected);
    updating_ = before;
    if (follow && selected != GTK_INVALID_LIST_POSITION) bringIntoView(selected);
    if (focused && !list_.holdsFocus()) focusList(); // it went with its row
    showTitle();
    showNotice();
    showSearch();
}

// Handles of one entry are the same in every list: none of 200,000 needs to be looked into.
guint MessageList::selectedPosition() const {
    const MailCore::SharedEntry entry = model_.entry();
    if (!entry) return GTK_INVALID_LIST_POSITION;
    const MailCore::EntryList& entries = rows_->entries();
    const auto found = std::ranges::find(entries, entry);
    return found == entries.end() ? GTK_INVALID_LIST_POSITION : static_cast<guint>(found - entries.begin());
}

void MessageList::showSelection() {
    const guint position = selectedPosition();
    showSearch();
    if (selection_->get_selected() == position) return;
    const bool before = std::exchange(updating_, true);
    selection_->set_selected(position);
    updating_ = before;
    if (position == GTK_INVALID_LIST_POSITION) return;
    bringIntoView(position);
    if (list_.holdsFocus()) focusSelected(); // the arrow keys go on from there
}

// Rows are equally tall.
bool MessageList::selectionInView() const {
    const guint selected = selection_->get_selected();
    if (selected == GTK_INVALID_LIST_POSITION || rows_->entries().empty()) return false;
    if (selected == wanted_) return true;
    const auto adjustment = scroller_.get_vadjustment();
    const double height = adjustment->get_upper() / static_cast<double>(rows_->entries().size());
    const double top = height * selected - adjustment->get_value();
    return top + height > 0 && top < adjustment->get_page_size();
}

// A list view that has no size yet divides by it: it would look for a row nowhere and show none. And it does
// not know the height of rows that are new. So rows are scrolled to at once where that can be, and once more
// when they have their places.
void MessageList::bringIntoView(guint position) {
    if (framesUntilLaidOut_ == 0)
        list_.add_tick_callback([this](const auto&) { return scrollWhenLaidOut(); });
    framesUntilLaidOut_ = 2;
    wanted_ = position;
    if (scroller_.get_vadjustment()->get_page_size() > 0)
        gtk_widget_activate_action(GTK_WIDGET(list_.gobj()), "list.scroll-to-item", "u", position);
}

bool MessageList::scrollWhenLaidOut() {
    if (scroller_.get_vadjustment()->get_page_size() <= 0 || --framesUntilLaidOut_ > 0) return true;
    const guint position = std::exchange(wanted_, GTK_INVALID_LIST_POSITION);
    framesUntilLaidOut_ = 0;
    if (position < rows_->entries().size())
        gtk_widget_activate_action(GTK_WIDGET(list_.gobj()), "list.scroll-to-item", "u", position);
    if (std::exchange(awaitsFocus_, false) && get_root() && get_root()->get_focus() == focusBefore_)
        focusSelected();
    return false;
}

void MessageList::focusList() {
    if (focusSelected()) return;
    list_.grab_focus();
    awaitsFocus_ = true; // until the rows have their places
    focusBefore_ = get_root() ? get_root()->get_focus() : nullptr;
}

bool MessageList::focusSelected() {
    const guint position = selectedPosition();
    if (position == GTK_INVALID_LIST_POSITION || !list_.get_mapped()) return false;
    bringIntoView(position);
    for (Gtk::Widget* item = list_.get_first_child(); item; item = item->get_next_sibling()) {
        const auto* const row = dynamic_cast<MessageRow*>(item->get_first_child());
        if (row && row->entry() == rows_->entries()[position]) return item->grab_focus();
    }
    return false;
}

void MessageList::selectBeside(int step) {
    const auto& entries = rows_->entries();
    if (entries.empty()) return;
    const guint position = selectedPosition();
    std::size_t next = step > 0 ? 0 : entries.size() - 1;
    if (position != GTK_INVALID_LIST_POSITION) {
        if (position == (step > 0 ? entries.size() - 1 : 0)) return;
        next = position + static_cast<std::size_t>(step);
    }
    model_.select(entries[next]->id);
}

void MessageList::select() {
    if (updating_) return;
    const guint position = selection_->get_selected();
    if (position < rows_->entries().size())
        model_.select(rows_->entries()[position]->id);
    else
        model_.select(std::nullopt);
}

// Asking again for the message on show reads it anew when it failed.
void MessageList::activate(guint position) {
    if (position >= rows_->entries().size()) return;
    model_.select(rows_->entries()[position]->id);
    entered_.emit();
}

// A click on the row that is selected already reads again what could not be read or shown.
void MessageList::choose(guint position) {
    if (position < rows_->entries().size() && rows_->entries()[position]->id == *model_.selectedEntry &&
        !*model_.reading && !model_.currentMessageReady())
        model_.select(*model_.selectedEntry);
    chosen_.emit();
}

void MessageList::setUpRow(const Glib::RefPtr<Gtk::ListItem>& item) {
    auto* const row = Gtk::make_managed<MessageRow>(model_.preferences());
    row->signalClicked().connect([this, place = item.get()] { choose(place->get_position()); });
    item->set_child(*row);
}

void MessageList::bindRow(const Glib::RefPtr<Gtk::ListItem>& item) {
    const auto row = std::dynamic_pointer_cast<EntryRow>(item->get_item());
    auto* const child = dynamic_cast<MessageRow*>(item->get_child());
    if (row && child) child->show(row->entry());
}

} // namespace TesselMail
