#pragma once

#include <gtkmm.h>

namespace TesselMail {

/// Holds one widget at the width the pane is given, whatever the widget holds: a long name or subject neither
/// widens nor narrows it.
class Pane : public Gtk::Widget {
public:
    /// `child` belongs to its owner and outlives the pane. Narrower than `least` the pane does not get.
    Pane(Gtk::Widget& child, int least, int width);
    ~Pane() override;

    int width() const noexcept { return width_; }
    /// The width the pane has where there is room for it, in pixels; kept between bounds.
    void setWidth(int width);

protected:
    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    Gtk::Widget& child_;
    int least_;
    int width_;
};

} // namespace TesselMail
