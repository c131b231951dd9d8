#include "TesselMail/Platform/NativeDesktop.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <gio/gdesktopappinfo.h>

#include <memory>
#include <utility>

namespace TesselMail {
namespace {

constexpr const char* mailLinks = "x-scheme-handler/mailto";
constexpr int fileManagerPatience = 10'000; // milliseconds, in which it may have to start

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

// By its name on the session bus; what the program started itself would be off the network with it.
Later<bool> NativeDesktop::showInFolder(const MailCore::URL& file) {
    return Later<bool>([address = file.text()](Later<bool>::Finish finish) {
        const auto bus =
            ObjectRef<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        if (!bus) return InterfaceThread::post([finish = std::move(finish)] { finish(false); });
        const char* const addresses[] = {address.c_str(), nullptr};
        auto owned = std::make_unique<Later<bool>::Finish>(std::move(finish));
        g_dbus_connection_call(
            bus.get(), "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
            "org.freedesktop.FileManager1", "ShowItems", g_variant_new("(^ass)", addresses, ""), nullptr,
            G_DBUS_CALL_FLAGS_NONE, fileManagerPatience, nullptr,
            +[](GObject* connection, GAsyncResult* result, gpointer data) noexcept {
                const std::unique_ptr<Later<bool>::Finish> told(static_cast<Later<bool>::Finish*>(data));
                GVariant* const answer =
                    g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr);
                if (answer) g_variant_unref(answer);
                (*told)(answer != nullptr);
            },
            owned.release());
    });
}

} // namespace TesselMail
