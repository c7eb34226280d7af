#include "platform/desktop/WindowSystem.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace platform {

// The toolkit has two plugins for it, "wayland" and "wayland-egl".
bool isOnWayland() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

bool isOnX11() {
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

QScreen* screenNamed(const QString& name) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    const auto found = std::ranges::find(screens, name, &QScreen::name);
    return name.isEmpty() || found == screens.end() ? nullptr : *found;
}

} // namespace platform
