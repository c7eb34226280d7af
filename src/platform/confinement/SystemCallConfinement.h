#pragma once

#include <system_error>

namespace platform {

// What a process may still do with sockets. It keeps those that it has.
enum class Sockets {
    Local, // make Unix sockets and connect them
    None
};

// Denies this thread, and each that it starts from now on, all system calls, for good, but those of a program
// that reads and writes files, draws, waits, and talks over the sockets that it has: no new programs,
// processes or namespaces, no tracing, no signals to others, no keys of the kernel, no mounting, no other
// sockets, no special mode bits of files. Such a call fails with ENOSYS, as on a kernel that does not have
// it, for which most libraries have a fallback.
//
// The version is that of the Landlock interface in use (0: none). Opening a file so that it is truncated is
// denied before version 3, which forbids it for other files than those allowed. Uses no_new_privs.
//
// An error where the memory for it is lacking.
[[nodiscard]] std::error_code confineSystemCalls(Sockets sockets, int landlockVersion);

// Denies all threads of this process what confineSystemCalls() has left them of making and connecting
// sockets: such calls fail with EPERM.
[[nodiscard]] std::error_code forbidNewConnections();

// Whether a kernel can filter system calls.
[[nodiscard]] bool canConfineSystemCalls();

} // namespace platform
