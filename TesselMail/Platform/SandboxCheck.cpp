#include "TesselMail/Platform/SandboxCheck.h"

#include "TesselMail/Platform/InterfaceThread.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <gio/gio.h>

#include <memory>

namespace TesselMail {
namespace {

using Finish = Later<bool>::Finish;

void checked(GObject* process, GAsyncResult* result, gpointer finish) noexcept {
    const std::unique_ptr<Finish> owned(static_cast<Finish*>(finish));
    (*owned)(g_subprocess_wait_check_finish(G_SUBPROCESS(process), result, nullptr) != FALSE);
}

void begin(Finish finish) {
    // In a Flatpak the portal starts the inner sandbox.
    if (g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS))
        return InterfaceThread::post([finish = std::move(finish)] { finish(true); });

    const auto flags =
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);
    const auto process = ObjectRef<GSubprocess>::adopt(
        g_subprocess_new(flags, nullptr, "bwrap", "--unshare-user", "--ro-bind", "/", "/", "true", nullptr));
    if (!process) // there is no bwrap
        return InterfaceThread::post([finish = std::move(finish)] { finish(false); });
    auto owned = std::make_unique<Finish>(std::move(finish));
    g_subprocess_wait_check_async(process.get(), nullptr, checked, owned.release());
}

} // namespace

Later<bool> sandboxWorks() {
    return Later<bool>(begin);
}

} // namespace TesselMail
