#pragma once

#include "panel/Confinement.h"

namespace panel {

// The extension of the resident program: keeps the panel ready, hidden until the centre at the other end of a
// socket (of SOCK_SEQPACKET) asks for it. Runs until the centre says so, or is gone, or the process is asked
// to end, and nothing that the user has chosen is pending. What this process has kept of its rights is known
// when this is called. Returns the exit status.
int runExtension(int socket, const Confinement& confinement);

} // namespace panel
