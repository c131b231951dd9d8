#pragma once

#include "TesselMail/Model/AppModel.h"
#include "TesselMail/Views/AdwaitaWidgets.h"
#include "TesselMail/Views/OneTabStop.h"

#include <gtkmm.h>

#include <optional>
#include <vector>

namespace TesselMail {

/// The open sources: one row each, in opening order. `model` outlives it.
class Sidebar : public Gtk::Box {
public:
    explicit Sidebar(AppModel& model);
    ~Sidebar() override;

    Adwaita::HeaderBar& header() noexcept { return header_; }
    /// Moves the focus to the selected source.
    void focusSources();
    /// Whether one of the sources has the focus.
    bool holdsFocus() { return list_.holdsFocus(); }
    /// Whether the model changes its selection because people move through the sources.
    bool isChoosing() const noexcept { return choosing_; }
    /// Emitted when people choose a source, also the one that is selected already.
    sigc::signal<void()>& signalChosen() noexcept { return chosen_; }
    /// Emitted after that when they did so by key.
    sigc::signal<void()>& signalEntered() noexcept { return entered_; }

private:
    class Row;

    void showTexts();
    void addRow(AppModel::CollectionID id);
    void showCollections();
    void showCapture();
    void showSelection();
    bool focusRow();
    void choose(Gtk::ListBoxRow* row);
    void setUpMenu();
    void showMenu(int presses, double x, double y);
    bool showMenuByKey(Gtk::Widget& list, const Glib::VariantBase& arguments);
    void closeMenuRow();
    void focusWhatIsLeft();

    AppModel& model_;
    Adwaita::HeaderBar header_;
    Adwaita::OpenButton open_;
    Gtk::MenuButton menu_;
    Gtk::Label captureHeading_;
    Gtk::Label capture_;
    Gtk::Label heading_;
    Gtk::ScrolledWindow scroller_;
    OneTabStop<Gtk::ListBox> list_;
    Gtk::Box footer_{Gtk::Orientation::HORIZONTAL, 6};
    Gtk::Button openFiles_;
    Gtk::Button settings_;
    Gtk::Box openContent_{Gtk::Orientation::HORIZONTAL, 8};
    Gtk::Image openIcon_;
    Gtk::Label openLabel_;
    Gtk::PopoverMenu rowMenu_{Glib::RefPtr<Gio::MenuModel>()};
    std::optional<AppModel::CollectionID> menuRow_; // the source the menu was opened for
    sigc::signal<void()> chosen_;
    sigc::signal<void()> entered_;
    std::vector<AppModel::CollectionID> shown_; // the sources the rows stand for
    bool updating_ = false;                     // rows change because the model did
    bool choosing_ = false;                     // and the model because a row did
};

} // namespace TesselMail
