// The system's lock alone: the web view of a process that is kept off the network, with every lock of the
// view off, in front of a server that was there before.
#include "Lock/NetworkLock.h"
#include "tests/Application/LockFixture.h"
#include "tests/Support/TemporaryFolder.h"

namespace TesselMail::Testing {
namespace {

std::unique_ptr<Server> server; // made while there still was a network

class NetworkLockedView : public Lock {};

TEST_F(NetworkLockedView, ReachesNobody) {
    ASSERT_EQ(server->visits(), 1) << "the control";
    webkit_settings_set_enable_javascript_markup(webkit_web_view_get_settings(view()), TRUE);
    for (const auto& [name, body] : loads) {
        load(filled(body, server->address()), false);
        EXPECT_EQ(server->visits(), 1) << name;
    }
    load(filled("<script>fetch('{}')</script>", server->address()), false);
    EXPECT_EQ(evaluate("try { await fetch('" + server->address() +
                       "'); return 'fetched' } catch { return 'blocked' }"),
              "blocked");
    EXPECT_EQ(evaluate("return await new Promise(done => { try { const s = new WebSocket('" +
                       server->address("ws") +
                       "'); s.onopen = () => done('open'); s.onerror = s.onclose = () => done('closed') } "
                       "catch { done('closed') } })"),
              "closed");
    EXPECT_EQ(server->visits(), 1);
}

bool visitOnce() {
    const auto client = ObjectRef<GSocketClient>::adopt(g_socket_client_new());
    const auto connection = ObjectRef<GSocketConnection>::adopt(
        g_socket_client_connect_to_uri(client.get(), server->address().c_str(), 80, nullptr, nullptr));
    while (connection && server->visits() == 0) g_main_context_iteration(nullptr, TRUE);
    return static_cast<bool>(connection);
}

} // namespace
} // namespace TesselMail::Testing

int main(int argc, char** argv) {
    using namespace TesselMail;
    testing::InitGoogleTest(&argc, argv);
    const MailCore::Testing::TemporaryFolder home;
    for (const char* const folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        g_setenv(folder, home.path(folder).c_str(), TRUE);
    gtk_init();
    Testing::server = std::make_unique<Testing::Server>();
    if (!Testing::visitOnce() || !lockNetwork() || Testing::visitOnce()) return 1;
    const int result = RUN_ALL_TESTS();
    Testing::server.reset();
    return result;
}
