#pragma once

class QWindow;

// What the module of LayerShell.h offers. It is a file of its own, so that only a panel on Wayland loads
// LayerShellQt and what that needs.
extern "C" {

// Whether the compositor announces the layer shell protocol. There is an application object on Wayland.
[[nodiscard]] bool korvelIsLayerShellAnnounced();

// platform::dockInLayerShell.
void korvelDockInLayerShell(QWindow* window, int margin);
}
