#include "TesselMail/Platform/SandboxCheck.h"

#include "TesselMail/Platform/ObjectRef.h"

#include <gio/gio.h>

#include <memory>

namespace TesselMail {
namespace {

constexpr guint patience = 3'000; // milliseconds

// The end of a process, awaited on a main context of its own: nothing else runs meanwhile.
struct Awaited {
    bool ended = false;
    bool succeeded = false;
};
using SharedAwaited = std::shared_ptr<Awaited>; // the end may come when nobody waits any more

void processEnded(GObject* process, GAsyncResult* result, gpointer awaited) noexcept {
    const std::unique_ptr<SharedAwaited> answer(static_cast<SharedAwaited*>(awaited));
    (*answer)->succeeded = g_subprocess_wait_check_finish(G_SUBPROCESS(process), result, nullptr) != FALSE;
    (*answer)->ended = true;
}

bool endsWell(GMainContext* context) {
    const auto flags =
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE);
    const auto process = ObjectRef<GSubprocess>::adopt(
        g_subprocess_new(flags, nullptr, "bwrap", "--unshare-user", "--ro-bind", "/", "/", "true", nullptr));
    if (!process) return false; // there is no bwrap
    const auto answer = std::make_shared<Awaited>();
    g_subprocess_wait_check_async(process.get(), nullptr, processEnded,
                                  std::make_unique<SharedAwaited>(answer).release());
    GSource* const limit = g_timeout_source_new(patience);
    g_source_set_callback(
        limit,
        +[](gpointer awaited) -> gboolean {
            static_cast<Awaited*>(awaited)->ended = true; // as far as anybody waits
            return G_SOURCE_REMOVE;
        },
        answer.get(), nullptr);
    g_source_attach(limit, context);
    while (!answer->ended) g_main_context_iteration(context, TRUE);
    if (!answer->succeeded) g_subprocess_force_exit(process.get());
    g_source_destroy(limit);
    g_source_unref(limit);
    return answer->succeeded;
}

} // namespace

bool sandboxWorks() {
    // In a Flatpak the portal starts the inner sandbox.
    if (g_file_test("/.flatpak-info", G_FILE_TEST_EXISTS)) return true;
    const std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context(g_main_context_new(),
                                                                                 &g_main_context_unref);
    g_main_context_push_thread_default(context.get());
    const bool works = endsWell(context.get());
    g_main_context_pop_thread_default(context.get());
    return works;
}

} // namespace TesselMail
