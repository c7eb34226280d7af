#pragma once

#include <system_error>

namespace platform {

// What a process may still do with sockets. It keeps those that it has.
enum class Sockets {
    Local, // make Unix sockets and connect them
    None
};

// Takes from this thread, and from each that it starts from now on, all system calls, for good, but those
// that a program needs which reads and writes files, draws, waits, and talks over the sockets that it has: no
// new programs, processes or namespaces, no tracing, no signals to others, no keys of the kernel, no
// mounting, no other sockets. Such a call fails with ENOSYS, as on a kernel that does not have it, which the
// C library has a way around where there is one.
//
// The version is that of the Landlock interface in use (0: none). What it does not forbid, and a call can be
// told by, is forbidden here: opening a file so that it is truncated, before version 3. Uses no_new_privs.
[[nodiscard]] std::error_code confineSystemCalls(Sockets sockets, int landlockVersion);

// Takes from all threads of this process what confineSystemCalls() has left them of making and connecting
// sockets. They fail with EPERM.
[[nodiscard]] std::error_code forbidNewConnections();

// Whether a kernel can filter system calls.
[[nodiscard]] bool canConfineSystemCalls();

} // namespace platform
