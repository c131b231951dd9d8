// The least a program can do to show a page with this library: what the window is measured beside. A press of
// Down or Up puts the other of its two pages in the place of the one on show.
#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string contentOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

struct Pages {
    WebKitWebView* view = nullptr;
    std::string first;
    std::string second;
    bool showsSecond = false;
};

gboolean turn(GtkEventControllerKey*, guint key, guint, GdkModifierType, Pages* pages) {
    if (key != GDK_KEY_Down && key != GDK_KEY_Up) return FALSE;
    pages->showsSecond = !pages->showsSecond;
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert(&arguments, "page", "s",
                          (pages->showsSecond ? pages->second : pages->first).c_str());
    const char* const script = "document.documentElement.innerHTML = page";
    webkit_web_view_call_async_javascript_function(pages->view, script, -1,
                                                   g_variant_ref_sink(g_variant_dict_end(&arguments)), "bare",
                                                   nullptr, nullptr, nullptr, nullptr);
    return TRUE;
}

} // namespace

int main(int, char** argv) {
    gtk_init();
    Pages pages{.first = contentOf(argv[1]), .second = contentOf(argv[2])};
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
    webkit_web_view_load_html(pages.view, pages.first.c_str(), nullptr);
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    g_signal_connect_swapped(window, "close-request", G_CALLBACK(g_main_loop_quit), loop);
    g_main_loop_run(loop);
}
