#include "TesselMail/Views/Shortcuts.h"

#include "TesselMail/Platform/ObjectRef.h"
#include "TesselMail/Views/AdwaitaWidgets.h"

#include <fmt/format.h>

namespace TesselMail {
namespace {

std::string escaped(const std::string& text) {
    return Glib::Markup::escape_text(text);
}

std::string groupMarkup(Shortcut::Group group, const Phrase& title, const Preferences& preferences) {
    std::string markup =
        fmt::format(R"(<child><object class="GtkShortcutsGroup"><property name="title">{}</property>)",
                    escaped(preferences.text(title)));
    for (const Shortcut& shortcut : shortcuts)
        if (shortcut.group == group)
            markup += fmt::format(R"(<child><object class="GtkShortcutsShortcut">
                <property name="accelerator">{}</property><property name="title">{}</property></object></child>)",
                                  escaped(shortcut.key), escaped(preferences.text(shortcut.text)));
    return markup + "</object></child>";
}

} // namespace

void setUpShortcuts(Gtk::Application& application) {
    for (const Shortcut& shortcut : shortcuts)
        application.set_accels_for_action(shortcut.action.path, {shortcut.key});
}

// The window can be made of markup only.
void showShortcuts(Gtk::Window& parent, const Preferences& preferences) {
    const std::string markup =
        R"(<interface><object class="GtkShortcutsWindow" id="window"><property name="modal">1</property>
        <child><object class="GtkShortcutsSection"><property name="section-name">all</property>)" +
        groupMarkup(Shortcut::Group::files, Texts::files, preferences) +
        groupMarkup(Shortcut::Group::reading, Texts::readingSettings, preferences) +
        groupMarkup(Shortcut::Group::window, Texts::window, preferences) +
        "</object></child></object></interface>";
    const auto builder = ObjectRef<GtkBuilder>::adopt(gtk_builder_new_from_string(markup.c_str(), -1));
    auto* const window = GTK_WINDOW(gtk_builder_get_object(builder.get(), "window"));
    Adwaita::attach(window, parent);
    gtk_window_set_title(window, preferences.text(Texts::keyboardShortcuts).c_str());
    gtk_window_present(window);
}

} // namespace TesselMail
