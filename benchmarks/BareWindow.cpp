// The least a program can do to show a page with this library: what the window is measured beside. A press of
// Down or Up puts the other message of a folder in the place of the one on show.
#include "TesselMail/Views/PageScripts.h"

#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct Message {
    std::string body;
    std::string stylesheet;
};

struct Pages {
    WebKitWebView* view = nullptr;
    Message messages[2];
    bool showsSecond = false;
};

// With the script of the reading page itself.
gboolean turn(GtkEventControllerKey*, guint key, guint, GdkModifierType, Pages* pages) {
    if (key != GDK_KEY_Down && key != GDK_KEY_Up) return FALSE;
    pages->showsSecond = !pages->showsSecond;
    const Message& message = pages->messages[pages->showsSecond ? 1 : 0];
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert(&arguments, "body", "s", message.body.c_str());
    g_variant_dict_insert(&arguments, "stylesheet", "s", message.stylesheet.c_str());
    g_variant_dict_insert(&arguments, "paper", "s", "#FFFFFF");
    g_variant_dict_insert(&arguments, "replace", "d", 1.0);
    g_variant_dict_insert(&arguments, "dark", "d", 0.0);
    g_variant_dict_insert(&arguments, "fontSize", "d", 16.0);
    webkit_web_view_call_async_javascript_function(pages->view, TesselMail::PageScripts::updateScript.data(),
                                                   -1, g_variant_ref_sink(g_variant_dict_end(&arguments)),
                                                   "bare", nullptr, nullptr, nullptr, nullptr);
    return TRUE;
}

} // namespace

int main(int, char** argv) {
    gtk_init();
    const std::string folder = argv[1];
    const auto message = [&folder](const char* number) {
        return Message{.body = contentOf(folder + "/" + number + ".body"),
                       .stylesheet = contentOf(folder + "/" + number + ".css")};
    };
    Pages pages{.messages = {message("0"), message("1")}};
    WebKitNetworkSession* const session = webkit_network_session_new_ephemeral();
    pages.view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr));
    webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(pages.view),
                                                     WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    GtkWidget* const window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), 1'280, 780);
    gtk_window_set_child(GTK_WINDOW(window), GTK_WIDGET(pages.view));
    GtkEventController* const keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    g_signal_connect(keys, "key-pressed", G_CALLBACK(turn), &pages);
    gtk_widget_add_controller(window, keys);
    gtk_window_present(GTK_WINDOW(window));
    webkit_web_view_load_html(pages.view, contentOf(folder + "/0.html").c_str(), nullptr);
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    g_signal_connect_swapped(window, "close-request", G_CALLBACK(g_main_loop_quit), loop);
    g_main_loop_run(loop);
}
