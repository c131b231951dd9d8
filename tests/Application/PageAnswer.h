#pragma once

#include "TesselMail/Platform/ObjectRef.h"

#include <webkit/webkit.h>

#include <string>

namespace TesselMail::Testing {

/// What a script answers, as text; empty when it failed.
struct PageAnswer {
    bool come = false;
    std::string text;
};

/// Runs `script`, a function body, in the page of `view` and in a world of the tests' own. `answer` outlives
/// it.
inline void askPage(WebKitWebView* view, const std::string& script, PageAnswer& answer) {
    webkit_web_view_call_async_javascript_function(
        view, script.c_str(), -1, nullptr, "test", nullptr, nullptr,
        [](GObject* asked, GAsyncResult* result, gpointer data) {
            auto& answer = *static_cast<PageAnswer*>(data);
            const auto value =
                ObjectRef<JSCValue>::adopt(webkit_web_view_call_async_javascript_function_finish(
                    WEBKIT_WEB_VIEW(asked), result, nullptr));
            char* const text = value ? jsc_value_to_string(value.get()) : nullptr;
            answer.text = text ? text : "";
            g_free(text);
            answer.come = true;
        },
        &answer);
}

} // namespace TesselMail::Testing
