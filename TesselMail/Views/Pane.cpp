#include "TesselMail/Views/Pane.h"

#include <algorithm>

namespace TesselMail {
namespace {

// Pixels.
constexpr int widest = 640;    // a pane beside the text leaves room for it
constexpr int narrowest = 350; // what every pane can be where it is alone

} // namespace

Pane::Pane(Gtk::Widget& child, int least, int width)
    : Glib::ObjectBase("TesselPane"), child_(child), least_(least), width_(std::clamp(width, least, widest)) {
    child_.set_parent(*this);
    set_overflow(Gtk::Overflow::HIDDEN);
}

Pane::~Pane() {
    if (!gobj()) return;
    child_.unparent();
}

void Pane::setWidth(int width) {
    width_ = std::clamp(width, least_, widest);
    queue_resize();
}

Gtk::SizeRequestMode Pane::get_request_mode_vfunc() const {
    return Gtk::SizeRequestMode::HEIGHT_FOR_WIDTH;
}

void Pane::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural, int& minimumBaseline,
                         int& naturalBaseline) const {
    int baseline = -1;
    child_.measure(orientation, -1, minimum, natural, baseline, baseline);
    minimumBaseline = naturalBaseline = -1;
    if (orientation == Gtk::Orientation::VERTICAL) return;
    minimum = std::clamp(minimum, least_, std::max(least_, narrowest));
    natural = std::max(minimum, width_);
}

// What is in the pane may want to be wider; the rest of it is cut off then.
void Pane::size_allocate_vfunc(int width, int height, int baseline) {
    int minimum = 0;
    int natural = 0;
    int ignored = -1;
    child_.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, ignored, ignored);
    child_.size_allocate(Gtk::Allocation(0, 0, std::max(width, minimum), height), baseline);
}

} // namespace TesselMail
