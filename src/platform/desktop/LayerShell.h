#pragma once

#include <string>

class QWindow;

namespace platform {

// Where the module lies that docks windows, which is built with LayerShellQt; there need not be one. It is
// found from the folder of the program.
[[nodiscard]] std::string layerShellFolder();

// Whether windows are docked on Wayland: there is the module, the compositor announces the layer shell
// protocol, and KORVEL_DOCKED in the environment is "yes", or is not "no" and the compositor is not sway.
// Stays as it is for the life of the process. There is an application object.
[[nodiscard]] bool hasLayerShell();

// Docks a window that is hidden, where hasLayerShell(): from the next time it is shown until it is destroyed,
// the compositor keeps it above other windows at the upper right corner of a screen's work area, margin
// points from the edges, and may give it the keyboard as it does an ordinary window. The compositor chooses
// the screen: only it knows where the user is. With that screen the window goes too.
void dockInLayerShell(QWindow& window, int margin);

} // namespace platform
