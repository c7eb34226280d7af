#pragma once

#include <QString>

#include <string>

namespace panel {

class PanelWindow;

// The picture that the program draws into a file instead of opening a window.
struct Snapshot {
    QString file;
    double scale = 1;   // pixels to a point, 0.5 to 8
    std::string locale; // as LC_ALL names it; empty for the user's
    int width = 320;    // of the content, in points
};

// Draws the panel with its view into a PNG file. False, with a line on standard error, where the file cannot
// be written.
[[nodiscard]] bool writeSnapshot(const Snapshot& snapshot);

// Draws a panel as it stands. False as above.
[[nodiscard]] bool writePicture(PanelWindow& window, const Snapshot& snapshot);

// Readies the environment for drawing without a display, at the snapshot's scale and in its locale. Called
// before the application is made.
void prepareSnapshot(const Snapshot& snapshot);

} // namespace panel
