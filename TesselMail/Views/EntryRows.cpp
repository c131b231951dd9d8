#include "TesselMail/Views/EntryRows.h"

#include <algorithm>
#include <utility>

namespace TesselMail {
namespace {

// The part of a list in which it differs from another one.
struct Splice {
    std::size_t position;
    std::size_t removed;
    std::size_t added;
};

Splice replacement(const MailCore::EntryList& before, const MailCore::EntryList& after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t head = 0;
    while (head < shorter && before[head] == after[head]) ++head;
    std::size_t tail = 0;
    while (tail < shorter - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail])
        ++tail;
    return {head, before.size() - head - tail, after.size() - head - tail};
}

} // namespace

Glib::RefPtr<EntryRow> EntryRow::create(MailCore::SharedEntry entry) {
    return Glib::make_refptr_for_instance(new EntryRow(std::move(entry)));
}

Glib::RefPtr<EntryRows> EntryRows::create() {
    return Glib::make_refptr_for_instance(new EntryRows());
}

EntryRows::EntryRows()
    : Glib::ObjectBase(typeid(EntryRows)), entries_(std::make_shared<const MailCore::EntryList>()) {}

// In two steps: told of a replacement, a list widget looks for its former rows among all the new ones and
// makes all its row widgets anew; both take longer than a screen may stand still.
void EntryRows::show(ArchiveWork::SharedList entries, const std::function<void()>& bothShown) {
    if (entries == entries_) return;
    ArchiveWork::SharedList before = std::exchange(entries_, std::move(entries));
    const auto [position, removed, added] = replacement(*before, *entries_);
    leaving_ = {.list = std::move(before), .from = position, .count = removed, .position = position + added};
    if (added > 0) items_changed(static_cast<guint>(position), 0, static_cast<guint>(added));
    if (removed > 0 && added > 0 && bothShown) bothShown();
    leaving_ = {};
    if (removed > 0) items_changed(static_cast<guint>(position + added), static_cast<guint>(removed), 0);
}

GType EntryRows::get_item_type_vfunc() {
    return G_TYPE_OBJECT;
}

guint EntryRows::get_n_items_vfunc() {
    return static_cast<guint>(entries_->size() + leaving_.count);
}

gpointer EntryRows::get_item_vfunc(guint position) {
    const MailCore::EntryList* list = entries_.get();
    std::size_t at = position;
    if (leaving_.count > 0 && at >= leaving_.position) {
        at -= leaving_.position;
        if (at < leaving_.count) {
            list = leaving_.list.get();
            at += leaving_.from;
        } else {
            at += leaving_.position - leaving_.count;
        }
    }
    return at < list->size() ? EntryRow::create((*list)[at])->gobj_copy() : nullptr;
}

} // namespace TesselMail
