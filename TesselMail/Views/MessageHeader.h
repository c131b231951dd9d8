#pragma once

#include "TesselMail/Model/AppModel.h"

#include <gtkmm.h>

#include <array>

namespace TesselMail {

/// What stands above a message: its subject, who wrote it to whom and when, or all of its headers. `model`
/// outlives it.
class MessageHeader : public Gtk::Box {
public:
    explicit MessageHeader(AppModel& model);
    /// Shows what belongs to the model's message.
    void update();

private:
    struct Line {
        Gtk::Label name;
        Gtk::Label value;
    };

    void showLine(Line& line, const Phrase& name, const std::string& value);
    void showHeaders(const std::vector<MailCore::Header>& headers);

    AppModel& model_;
    Gtk::Label subject_;
    Gtk::Grid summary_;
    std::array<Line, 4> lines_;
    Gtk::ScrolledWindow scroller_;
    Gtk::TextView headers_;
    Glib::RefPtr<Gtk::TextTag> nameTag_;
};

} // namespace TesselMail
