#pragma once

#include "TesselMail/Model/ArchiveWork.h"

#include <giomm.h>
#include <glibmm.h>

#include <functional>

namespace TesselMail {

/// One listed message, as list widgets want it: made when a row comes near the screen.
class EntryRow : public Glib::Object {
public:
    static Glib::RefPtr<EntryRow> create(MailCore::SharedEntry entry);
    const MailCore::SharedEntry& entry() const noexcept { return entry_; }

private:
    explicit EntryRow(MailCore::SharedEntry entry) : entry_(std::move(entry)) {}
    MailCore::SharedEntry entry_;
};

/// The listed messages as a list model over the model's own list, which it shares and does not copy.
class EntryRows : public Gio::ListModel,
                  public Glib::Object { // in this order: a type gets its interfaces first
public:
    static Glib::RefPtr<EntryRows> create();

    /// Shows `entries` from now on. What both lists have in common at their ends keeps its rows. Where rows
    /// are replaced, the new ones stand before the former ones for a moment, while `bothShown` runs: a list
    /// widget that scrolls to a new row then takes the widgets of the former ones along.
    void show(ArchiveWork::SharedList entries, const std::function<void()>& bothShown = {});
    const MailCore::EntryList& entries() const noexcept { return *entries_; }

protected:
    EntryRows();
    GType get_item_type_vfunc() override;
    guint get_n_items_vfunc() override;
    gpointer get_item_vfunc(guint position) override;

private:
    // Entries that are replaced, for as long as they are still told of.
    struct Leaving {
        ArchiveWork::SharedList list; // null most of the time
        std::size_t from = 0;         // in that list
        std::size_t count = 0;
        std::size_t position = 0; // where they stand now
    };

    ArchiveWork::SharedList entries_;
    Leaving leaving_;
};

} // namespace TesselMail
