// The filter cannot be taken off again, so each test locks a process of its own.
#include "Lock/NetworkLock.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <functional>
#include <future>
#include <string>
#include <thread>

namespace TesselMail::Testing {
namespace {

// The number of the first check in `checks` that does not hold in a child, from 1; 0 when all do.
int inChild(const std::function<int()>& checks) {
    const pid_t child = fork();
    if (child == 0) _exit(checks());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

// What making a socket ends with: 0, or the error's number. The family is handed over as a whole register.
int socketError(std::uint64_t family) {
    const long made = syscall(SYS_socket, family, SOCK_STREAM, 0);
    if (made < 0) return errno;
    close(static_cast<int>(made));
    return 0;
}

// Raw netlink sockets do not stream.
int netlinkError() {
    const int made = socket(AF_NETLINK, SOCK_RAW, 0);
    if (made < 0) return errno;
    close(made);
    return 0;
}

TEST(NetworkLock, RefusesEverySocketThatLeavesTheMachine) {
    static constexpr auto refused = std::to_array<std::uint64_t>(
        {AF_UNSPEC, AF_INET, AF_INET6, AF_AX25, AF_IPX, 15, AF_PACKET, AF_BLUETOOTH, AF_VSOCK, AF_XDP, 63,
         (1ULL << 32) | AF_INET, (1ULL << 32) | AF_UNSPEC, 0xFFFFFFFFFFFFFFFF});
    ASSERT_EQ(inChild([] { return socketError(AF_INET); }), 0) << "the control: there is something to refuse";
    const int failed = inChild([] {
        if (!lockNetwork()) return 100;
        int check = 1;
        for (const std::uint64_t family : refused) {
            if (socketError(family) != EACCES) return check;
            ++check;
        }
        if (syscall(SYS_io_uring_setup, 1, nullptr) != -1 || errno != ENOSYS) return 101;
        if (socketError(AF_UNIX) != 0) return 102;
        if (netlinkError() != 0) return 103;
        return 0;
    });
    EXPECT_EQ(failed, 0);
}

TEST(NetworkLock, HoldsForThreadsThereAreAndForWhatIsStarted) {
    const int failed = inChild([] {
        std::promise<void> locked;
        int error = 0;
        std::thread earlier([&] {
            locked.get_future().wait();
            error = socketError(AF_INET);
        });
        const bool done = lockNetwork();
        locked.set_value();
        earlier.join();
        if (!done) return 1;
        if (error != EACCES) return 2;
        if (inChild([] { return socketError(AF_INET6); }) != EACCES) return 3;
        // A program of another make sees its status and cannot do without.
        if (inChild([] {
                execl("/bin/sh", "sh", "-c", "grep -q '^Seccomp:.*2' /proc/self/status", nullptr);
                return 1;
            }) != 0)
            return 4;
        return lockNetwork() && socketError(AF_UNIX) == 0 ? 0 : 5; // a second lock does no harm
    });
    EXPECT_EQ(failed, 0);
}

} // namespace
} // namespace TesselMail::Testing
