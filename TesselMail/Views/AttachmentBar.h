#pragma once

#include "TesselMail/Model/AppModel.h"

#include <gtkmm.h>

namespace TesselMail {

/// The attachments of the message on show, each a button that saves it or reads it as a message. `model`
/// outlives it.
class AttachmentBar : public Gtk::ScrolledWindow {
public:
    explicit AttachmentBar(AppModel& model);
    /// Shows what belongs to the model's message; hides itself when there is nothing.
    void update();

protected:
    // As tall as its rows at the width it has; a scrolled window asks for those at the least width.
    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;

private:
    enum class Action { read, save };

    void add(const MailCore::MailAttachment& attachment);
    void act(MailCore::UUID attachment, Action action);

    AppModel& model_;
    Gtk::FlowBox buttons_;
};

} // namespace TesselMail
