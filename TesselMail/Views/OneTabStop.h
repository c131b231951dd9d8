#pragma once

#include <gtkmm.h>

#include <functional>
#include <utility>

namespace TesselMail {

/// A list that Tab enters and leaves as one, instead of walking through its rows. gtkmm does not pass on the
/// operation of the toolkit that decides this, so it is replaced in the class made for this type.
template <typename List>
class OneTabStop : public List {
public:
    OneTabStop() : Glib::ObjectBase(typeid(OneTabStop)) {
        GTK_WIDGET_GET_CLASS(this->gobj())->focus = &OneTabStop::moveFocus;
    }

    /// `enter` gives the focus to the row that should have it when Tab comes into the list, and answers
    /// whether there is one.
    void onEnter(std::function<bool()> enter) { enter_ = std::move(enter); }
    /// Whether one of its rows has the focus, or something inside a row.
    bool holdsFocus() { return this->get_focus_child() != nullptr; }

private:
    static gboolean moveFocus(GtkWidget* widget, GtkDirectionType direction) {
        if (direction == GTK_DIR_TAB_FORWARD || direction == GTK_DIR_TAB_BACKWARD) {
            if (GtkWidget* const row = gtk_widget_get_focus_child(widget))
                return gtk_widget_child_focus(row, direction);
            const auto* const self = dynamic_cast<OneTabStop*>(Glib::wrap(widget));
            if (self && self->enter_ && self->enter_()) return TRUE;
        }
        auto* const parent = GTK_WIDGET_CLASS(g_type_class_peek_parent(GTK_WIDGET_GET_CLASS(widget)));
        return parent->focus(widget, direction);
    }

    std::function<bool()> enter_;
};

} // namespace TesselMail
