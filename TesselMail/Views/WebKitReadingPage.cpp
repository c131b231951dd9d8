#include "TesselMail/Views/WebKitReadingPage.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Views/PageScripts.h"

#include <gtk/gtk.h>

#include <memory>
#include <utility>

namespace TesselMail {
namespace {

constexpr const char* scriptWorld = "TesselMail";

using namespace PageScripts;

// One value of the page, or nothing when the script failed.
using Answer = std::function<void(JSCValue*)>;

// When the page's process dies, its running script fails first and the termination is told afterwards. The
// turn in between lets the coordinator hear of the termination first, which is what people should be told.
void answered(GObject* view, GAsyncResult* result, gpointer answer) noexcept {
    const std::unique_ptr<Answer> owned(static_cast<Answer*>(answer));
    GError* error = nullptr;
    const auto value = ObjectRef<JSCValue>::adopt(
        webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(view), result, &error));
    if (!error) return (*owned)(value.get());
    g_error_free(error);
    InterfaceThread::post([answer = std::move(*owned)] { answer(nullptr); });
}

void call(WebKitWebView* view, std::string_view script, GVariant* arguments, Answer answer) {
    // The web view reads the arguments in this very call and leaves them to us.
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> held(g_variant_ref_sink(arguments),
                                                                     &g_variant_unref);
    auto owned = std::make_unique<Answer>(std::move(answer));
    webkit_web_view_call_async_javascript_function(view, script.data(), static_cast<gssize>(script.size()),
                                                   arguments, scriptWorld, nullptr, nullptr, answered,
                                                   owned.release());
}

GVariant* text(std::string value) {
    std::erase(value, '\0'); // which no argument can carry
    return g_variant_new_string(value.c_str());
}

// The web view takes no booleans as arguments.
GVariant* flag(bool value) {
    return g_variant_new_double(value ? 1 : 0);
}

std::optional<PageRectangle> rectangleOf(JSCValue* value) {
    if (!value || !jsc_value_is_object(value)) return std::nullopt;
    const auto number = [value](const char* name) {
        const auto property = ObjectRef<JSCValue>::adopt(jsc_value_object_get_property(value, name));
        return jsc_value_to_double(property.get());
    };
    return PageRectangle{number("x"), number("y"), number("width"), number("height")};
}

std::optional<WebKitReadingPage::Link> linkOf(JSCValue* value) {
    if (!value || !jsc_value_is_object(value)) return std::nullopt;
    const auto text = [value](const char* name) {
        const auto property = ObjectRef<JSCValue>::adopt(jsc_value_object_get_property(value, name));
        const std::unique_ptr<char, decltype(&g_free)> bytes(jsc_value_to_string(property.get()), &g_free);
        return std::string(bytes.get());
    };
    return WebKitReadingPage::Link{.href = text("href"), .text = text("text")};
}

} // namespace

void WebKitReadingPage::load(std::string html, std::uint64_t navigation) {
    navigation_ = navigation;
    webkit_web_view_load_html(view_.get(), html.c_str(), nullptr);
}

void WebKitReadingPage::stopLoading() {
    webkit_web_view_stop_loading(view_.get());
}

void WebKitReadingPage::update(PageUpdate update, std::function<void(bool)> answer) {
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert_value(&arguments, "body", text(std::move(update.body)));
    g_variant_dict_insert_value(&arguments, "stylesheet", text(std::move(update.stylesheet)));
    g_variant_dict_insert_value(&arguments, "replace", flag(update.replace));
    g_variant_dict_insert_value(&arguments, "dark", flag(update.dark));
    g_variant_dict_insert_value(&arguments, "paper", text(std::move(update.paper)));
    g_variant_dict_insert_value(&arguments, "fontSize", g_variant_new_double(update.fontSize));
    call(view_.get(), updateScript, g_variant_dict_end(&arguments),
         [answer = std::move(answer)](JSCValue* value) { answer(value != nullptr); });
}

void WebKitReadingPage::locateLink(std::string href,
                                   std::function<void(std::optional<PageRectangle>)> answer) {
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert_value(&arguments, "href", text(std::move(href)));
    call(view_.get(), locateScript, g_variant_dict_end(&arguments),
         [answer = std::move(answer)](JSCValue* value) { answer(rectangleOf(value)); });
}

void WebKitReadingPage::moveFocus(bool forward, std::function<void(std::optional<Link>)> answer) {
    GVariantDict arguments;
    g_variant_dict_init(&arguments, nullptr);
    g_variant_dict_insert_value(&arguments, "forward", flag(forward));
    call(view_.get(), focusScript, g_variant_dict_end(&arguments),
         [answer = std::move(answer)](JSCValue* value) { answer(linkOf(value)); });
}

PageRectangle WebKitReadingPage::bounds() const {
    GtkWidget* const widget = GTK_WIDGET(view_.get());
    return {0, 0, static_cast<double>(gtk_widget_get_width(widget)),
            static_cast<double>(gtk_widget_get_height(widget))};
}

} // namespace TesselMail
