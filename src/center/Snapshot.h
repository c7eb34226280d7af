#pragma once

#include "center/Options.h"

namespace center {

class PanelWindow;

// Draws the panel with its view into a PNG file. False, with a line on standard error, where the file cannot
// be written.
[[nodiscard]] bool writeSnapshot(const Options::Snapshot& snapshot);

// Draws a panel as it stands. False as above.
[[nodiscard]] bool writePicture(PanelWindow& window, const Options::Snapshot& snapshot);

// Readies the environment for drawing without a display, at the snapshot's scale and in its locale. Called
// before the application is made.
void prepareSnapshot(const Options::Snapshot& snapshot);

} // namespace center
