#pragma once

namespace panel {

// The background of the panel's window. Without a compositor a translucent window would be black, and a
// window with a frame of the desktop has the corners of that frame.
enum class Backdrop { RoundTranslucent, SquareOpaque };

// The background that the current desktop supports.
[[nodiscard]] Backdrop backdropOfDesktop();

} // namespace panel
