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

void EntryRows::show(ArchiveWork::SharedList entries) {
    if (entries == entries_) return;
    const ArchiveWork::SharedList before = std::exchange(entries_, std::move(entries));
    const Splice splice = replacement(*before, *entries_);
    // In two steps: told of a replacement, a list widget looks for its former rows among all the new ones,
    // which takes longer than a screen may stand still.
    hidden_ = {splice.position, splice.added};
    if (splice.removed > 0)
        items_changed(static_cast<guint>(splice.position), static_cast<guint>(splice.removed), 0);
    hidden_ = {};
    if (splice.added > 0)
        items_changed(static_cast<guint>(splice.position), 0, static_cast<guint>(splice.added));
}

GType EntryRows::get_item_type_vfunc() {
    return G_TYPE_OBJECT;
}

guint EntryRows::get_n_items_vfunc() {
    return static_cast<guint>(entries_->size() - hidden_.count);
}

gpointer EntryRows::get_item_vfunc(guint position) {
    const std::size_t at = position < hidden_.position ? position : position + hidden_.count;
    if (at >= entries_->size()) return nullptr;
    return EntryRow::create((*entries_)[at])->gobj_copy();
}

} // namespace TesselMail
