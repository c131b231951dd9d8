#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Model/WindowState.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/MessageList.h"
#include "TesselMail/Views/Pane.h"
#include "TesselMail/Views/ReadingPane.h"
#include "TesselMail/Views/Sidebar.h"

#include <gtkmm.h>

namespace TesselMail {

/// Sources, messages and the message on show beside each other, or one after the other where it is narrow.
/// People drag the lines between them. `model` and `state` outlive it.
class Panes {
public:
    Panes(AppModel& model, WindowState& state, PreparedView prepared);
    Panes(const Panes&) = delete;
    Panes& operator=(const Panes&) = delete;
    ~Panes();

    Gtk::Widget& widget() const { return Adwaita::wrapped(outer_); }
    MessageList& list() noexcept { return list_; }
    ReadingPane& reader() noexcept { return reader_; }
    void showTexts();
    void showSources();
    void showList();
    void showReader();
    /// The same, with the focus in the text.
    void read();
    /// Shows the selected collection where only one pane fits: a single letter itself, else the list. The
    /// focus goes to its messages, unless people have it in the sources or in a message.
    void showSelected();
    /// Moves the focus `steps` panes on, around the end.
    void moveFocus(int steps);
    /// Makes the pane with the focus wider by a step, or narrower by a step below zero; the message by what
    /// the list beside it gives or takes.
    void widen(int steps);
    /// From the message to the list, and from there to the sources, where one of them hides the others.
    void goBack();
    /// The widths people gave the panes go to the state.
    void keepWidths();

private:
    enum class Place { sources, list, reader };

    Gtk::Widget& addLine(AdwLeaflet* leaflet);
    void letDrag(Gtk::Widget& line, Pane& pane);
    void showFolded();
    void turnTo(AdwLeaflet* leaflet, Gtk::Widget& pane);
    void showMessages();
    void showChosen();
    void enterSelected();
    bool showsLetter() const;
    bool isFolded() const;
    bool holdsFocus(const Gtk::Widget& pane) const;
    Place focused() const;
    void focus(Place place);

    AppModel& model_;
    WindowState& state_;
    Sidebar sidebar_;
    MessageList list_;
    ReadingPane reader_;
    Pane sourcesPane_;
    Pane listPane_;
    Pane readerPane_;
    Gtk::Button backToSources_;
    Gtk::Button backToList_;
    AdwLeaflet* outer_; // the sources, and `inner_`
    AdwLeaflet* inner_; // the list, and the reader
};

} // namespace TesselMail
