#pragma once

#include <gtkmm.h>

namespace TesselMail {

/// Where an address or a name has to be broken, no hyphen is added, which would be taken for a part of it.
inline void breakWithoutHyphens(Gtk::Label& label) {
    PangoAttrList* const attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_insert_hyphens_new(FALSE));
    gtk_label_set_attributes(label.gobj(), attributes);
    pango_attr_list_unref(attributes);
}

/// The same for all that the text of `view` holds now.
inline void breakWithoutHyphens(Gtk::TextView& view) {
    const auto buffer = view.get_buffer();
    const auto tags = buffer->get_tag_table();
    auto tag = tags->lookup("no-hyphens");
    if (!tag) {
        tag = buffer->create_tag("no-hyphens");
        tag->property_insert_hyphens() = false;
    }
    buffer->apply_tag(tag, buffer->begin(), buffer->end());
}

} // namespace TesselMail
