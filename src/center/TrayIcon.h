#pragma once

#include "center/ColorScheme.h"

#include <QColor>
#include <QIcon>

namespace center {

enum class TrayPicture { Usual, Overdue };

// The icon of the tray. If the icon theme has it by its name, the host of the tray draws it in its own
// colour; else it has that of a colour scheme.
[[nodiscard]] QIcon trayIcon(TrayPicture picture, ColorScheme scheme);

// The colour in which the icon is drawn then. Some desktops have a dark tray with a light scheme, so that the
// colour of the light one can be seen on both.
[[nodiscard]] QColor trayColor(ColorScheme scheme);

} // namespace center
