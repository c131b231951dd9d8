#include "TesselMail/Platform/NativeDesktop.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <gio/gdesktopappinfo.h>

#include <utility>

namespace TesselMail {
namespace {

constexpr const char* mailLinks = "x-scheme-handler/mailto";

} // namespace

NativeDesktop::NativeDesktop(std::string_view applicationID)
    : desktopEntry_(std::string(applicationID) + ".desktop") {}

bool NativeDesktop::handlesMail() const {
    const auto handler = ObjectRef<GAppInfo>::adopt(g_app_info_get_default_for_type(mailLinks, FALSE));
    const char* const id = handler ? g_app_info_get_id(handler.get()) : nullptr;
    return id && desktopEntry_ == id;
}

void NativeDesktop::present() {
    if (present_) present_();
}

// Fails where the desktop entry is not installed: nothing could start the program for a link then.
Later<bool> NativeDesktop::becomeMailHandler() {
    return Later<bool>([file = desktopEntry_](Later<bool>::Finish finish) {
        const auto entry = ObjectRef<GDesktopAppInfo>::adopt(g_desktop_app_info_new(file.c_str()));
        const bool done =
            entry && g_app_info_set_as_default_for_type(G_APP_INFO(entry.get()), mailLinks, nullptr) != FALSE;
        InterfaceThread::post([finish = std::move(finish), done] { finish(done); });
    });
}

} // namespace TesselMail
