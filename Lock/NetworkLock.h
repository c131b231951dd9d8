#pragma once

namespace TesselMail {

/// Refuses the network to this process, to all of its threads and to every process it starts from now on, by
/// a seccomp filter that cannot be taken off again: a socket of any family but AF_UNIX and AF_NETLINK fails
/// with EACCES, and io_uring, which could make one unseen, with ENOSYS. Connections that are open stay open,
/// as one to a display may be. Gives up new privileges as well, as the kernel demands it. False where the
/// kernel takes no such filter: nothing has changed then.
bool lockNetwork() noexcept;

} // namespace TesselMail
