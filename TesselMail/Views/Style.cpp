#include "TesselMail/Views/Style.h"

namespace TesselMail {
namespace {

constexpr const char* style = R"(
.sidebar-pane { background-color: mix(@window_bg_color, @window_fg_color, 0.03); }
.list-pane { background-color: @window_bg_color; }
.reading-pane { background-color: @view_bg_color; }
.sidebar-pane headerbar, .list-pane headerbar, .reading-pane headerbar, .welcome headerbar {
    background: none; box-shadow: none; border: none;
}

/* One pixel is seen and nine can be grasped. */
.pane-line { min-width: 1px; padding: 0 4px; margin: 0 -4px; background-clip: content-box; }

.sidebar-heading { font-weight: bold; font-size: 0.85em; opacity: 0.6; padding: 8px 18px 4px; }
.sidebar-pane .navigation-sidebar { background: none; }
.captured-link { padding: 4px 18px 8px; font-weight: bold; }
.source-row { padding: 6px 4px 6px 10px; }
/* It takes no room from the name while it is hidden. */
.source-row .row-close { opacity: 0; min-width: 24px; min-height: 24px; padding: 0; margin-left: -24px; }
.source-row:hover .row-close, .source-row:focus-within .row-close { opacity: 1; margin-left: 0; }

.message-list { background: none; padding: 0 6px 6px; }
.message-list > row { border-radius: 8px; padding: 0; margin: 1px 0; }
.message-row { padding: 9px 12px 9px; }
.message-sender { font-weight: 600; min-height: 1.45em; }
.message-subject { min-height: 1.45em; }
/* As wide as a day with its year; lower, so that it stands on one line with the larger name. */
.message-date { font-size: 0.85em; opacity: 0.6; min-height: 1.45em; min-width: 7.5em; padding-top: 2px; }
.message-list > row:selected { background-color: alpha(@accent_bg_color, 0.18); color: inherit; }
.message-list:focus-within > row:selected { background-color: @accent_bg_color; color: @accent_fg_color; }
.message-list:focus-within > row:selected .message-date { opacity: 0.85; }

.notice {
    background-color: alpha(@warning_bg_color, 0.2);
    border-radius: 8px; margin: 0 8px 8px; padding: 8px 12px; font-size: 0.9em;
}

.message-header { padding: 4px 28px 16px; }
.all-headers { background: none; font-size: 0.95em; }
.attachments { padding: 0 24px 14px; }
.attachment { padding: 6px 12px 6px 10px; font-weight: normal; }
.reading-view { margin: 0 12px 0 28px; }
.reading-view > *:focus:focus-visible, .plain-message:focus:focus-visible {
    outline: 2px solid alpha(@accent_color, 0.5); outline-offset: -2px;
}
.plain-message { background: none; padding: 14px 28px 28px; }
.plain-reason { margin: 12px 28px 0; }
.link-target {
    background-color: @popover_bg_color; color: @popover_fg_color; font-size: 0.85em;
    border-radius: 6px 6px 0 0; padding: 3px 8px; box-shadow: 0 0 0 1px alpha(@borders, 0.8);
}
.link-target.leads-elsewhere { background-color: @warning_bg_color; color: @warning_fg_color; }

.opening-bar {
    background-color: @popover_bg_color; color: @popover_fg_color; border-radius: 99px;
    padding: 8px 8px 8px 18px; margin: 12px 12px 20px;
    box-shadow: 0 1px 6px 1px alpha(black, 0.18), 0 0 0 1px alpha(@borders, 0.9);
}
.pill-small { border-radius: 99px; padding: 4px 14px; }

.drop-frame {
    border: 3px dashed @accent_bg_color; border-radius: 12px; margin: 8px;
    background-color: alpha(@accent_bg_color, 0.08);
}
)";

} // namespace

void installStyle(const Glib::RefPtr<Gdk::Display>& display) {
    const auto provider = Gtk::CssProvider::create();
    provider->load_from_data(style);
    Gtk::StyleContext::add_provider_for_display(display, provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

} // namespace TesselMail
