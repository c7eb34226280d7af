#include "center/TrayIcon.h"

#include "platform/images/BundleImages.h"

#include <QPixmap>

namespace center {

namespace {

// Trays show one of these, at one pixel to a point or at two.
constexpr int sides[] = {16, 20, 22, 24, 32, 44, 48};

} // namespace

QIcon trayIcon(TrayPicture picture, ColorScheme scheme) {
    const bool isOverdue = picture == TrayPicture::Overdue;
    const QString name = isOverdue ? QStringLiteral("com.korvel.today-overdue-symbolic")
                                   : QStringLiteral("com.korvel.today-symbolic");
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    const platform::Image image =
        platform::imageNamed(isOverdue ? QStringLiteral("trayOverdue") : QStringLiteral("tray"))
            .tinted(trayColor(scheme));
    QIcon icon;
    for (const int side : sides) {
        QImage pixels = image.pixels(side / image.size().width());
        pixels.setDevicePixelRatio(1);
        icon.addPixmap(QPixmap::fromImage(pixels));
    }
    return icon;
}

QColor trayColor(ColorScheme scheme) {
    return scheme == ColorScheme::Dark ? QColor(0xdf, 0xe2, 0xe6) : QColor(0x75, 0x79, 0x80);
}

} // namespace center
