#include "Lock/NetworkLock.h"

#include <seccomp.h>
#include <sys/socket.h>

#include <cerrno>
#include <memory>
#include <type_traits>

namespace TesselMail {
namespace {

struct Release {
    void operator()(scmp_filter_ctx filter) const noexcept { seccomp_release(filter); }
};
using Filter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, Release>;

bool refuseSockets(const Filter& filter, scmp_compare comparison, int family) {
    const scmp_arg_cmp which{
        .arg = 0, .op = comparison, .datum_a = static_cast<scmp_datum_t>(family), .datum_b = 0};
    return seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(EACCES), SCMP_SYS(socket), 1, which) == 0;
}

// Whole registers are compared: a family with other bits above its own is refused, whatever the kernel would
// make of it. Another architecture's calls, which these rules do not see, do not exist.
bool fill(const Filter& filter) {
    static_assert(AF_UNIX < AF_NETLINK);
    for (int family = 0; family < AF_NETLINK; ++family)
        if (family != AF_UNIX && !refuseSockets(filter, SCMP_CMP_EQ, family)) return false;
    return refuseSockets(filter, SCMP_CMP_GT, AF_NETLINK) &&
           seccomp_rule_add(filter.get(), SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(io_uring_setup), 0) == 0 &&
           seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(ENOSYS)) == 0 &&
           seccomp_attr_set(filter.get(), SCMP_FLTATR_CTL_TSYNC, 1) == 0; // for the threads there are already
}

} // namespace

bool lockNetwork() noexcept {
    const Filter filter(seccomp_init(SCMP_ACT_ALLOW));
    return filter && fill(filter) && seccomp_load(filter.get()) == 0;
}

} // namespace TesselMail
