#pragma once

#include <gtkmm.h>

#include <string>

namespace TesselMail {

/// The labelled values of a link, one below the other, to read and to select.
class LinkFields : public Gtk::Box {
public:
    LinkFields();

    void clear();
    /// One more value, with a button that copies it when `copyHelp` says what that button is called.
    void add(const std::string& label, const std::string& value, const std::string& copyHelp = {});
};

/// The symbolic icon for a symbol of a link panel.
std::string iconOfSymbol(const std::string& symbol);

} // namespace TesselMail
