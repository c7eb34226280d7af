#pragma once

class QScreen;
class QString;

namespace platform {

// Which window system this process is shown on; neither where it draws to pictures alone. There is an
// application object.
[[nodiscard]] bool isOnWayland();
[[nodiscard]] bool isOnX11();

// The screen with that QScreen::name(); null where there is none, and for an empty name.
[[nodiscard]] QScreen* screenNamed(const QString& name);

} // namespace platform
