#pragma once

#include "platform/confinement/FileConfinement.h"

namespace platform {

// What any program reads: libraries, the data that comes with them, locales, zone files, what the kernel
// tells a process about itself. Nothing of the user's, but for the time zone's file where it is one of his.
[[nodiscard]] AllowedFiles systemFiles();

// What a program with a window reads beside: fonts and how they are chosen, cursors, icons, themes, and the
// key to the X server; those of the user too. By the standards of freedesktop.org (base directories, icon
// themes), and as fontconfig, libXcursor and libX11 look for them.
[[nodiscard]] AllowedFiles desktopFiles();

// Adds the second to the first.
void add(AllowedFiles& files, const AllowedFiles& others);

} // namespace platform
