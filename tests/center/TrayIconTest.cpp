#include "center/TrayIcon.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <filesystem>

using center::ColorScheme;
using center::trayColor;
using center::trayIcon;
using center::TrayPicture;

namespace {

QImage pixelsOf(TrayPicture picture, ColorScheme scheme, int side) {
    return trayIcon(picture, scheme).pixmap(side, side).toImage();
}

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

// The contrast ratio of WCAG 2.
double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

const QColor darkTray(0x31, 0x36, 0x3b);
const QColor blackTray(0x13, 0x13, 0x13);
const QColor lightTray(0xef, 0xf0, 0xf1);

} // namespace

TEST(TrayIconTest, hasTheSizesOfTrays) {
    for (const TrayPicture picture : {TrayPicture::Usual, TrayPicture::Overdue})
        for (const int side : {16, 20, 22, 24, 32, 44, 48})
            EXPECT_EQ(pixelsOf(picture, ColorScheme::Dark, side).size(), QSize(side, side));
}

TEST(TrayIconTest, isDrawnInTheColorOfTheScheme) {
    for (const ColorScheme scheme : {ColorScheme::Dark, ColorScheme::Light})
        for (const TrayPicture picture : {TrayPicture::Usual, TrayPicture::Overdue}) {
            const QImage image = pixelsOf(picture, scheme, 48);
            int inked = 0;
            for (int y = 0; y < 48; ++y)
                for (int x = 0; x < 48; ++x)
                    if (image.pixelColor(x, y).alpha() == 255) {
                        EXPECT_EQ(image.pixelColor(x, y), trayColor(scheme));
                        ++inked;
                    }
            EXPECT_GT(inked, 48 * 48 / 10);
            EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        }
}

TEST(TrayIconTest, canBeToldFromTheOverdueOneInEachSize) {
    for (const int side : {16, 22, 48}) {
        const QImage usual = pixelsOf(TrayPicture::Usual, ColorScheme::Dark, side);
        const QImage overdue = pixelsOf(TrayPicture::Overdue, ColorScheme::Dark, side);
        int differing = 0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                differing += std::abs(qAlpha(usual.pixel(x, y)) - qAlpha(overdue.pixel(x, y))) > 128;
        EXPECT_GT(differing, side * side / 10) << side;
    }
}

TEST(TrayIconTest, canBeSeenOnTheTraysOfTheScheme) {
    EXPECT_GE(contrast(trayColor(ColorScheme::Dark), darkTray), 7);
    EXPECT_GE(contrast(trayColor(ColorScheme::Dark), blackTray), 7);
    EXPECT_GE(contrast(trayColor(ColorScheme::Light), lightTray), 3);
    EXPECT_GE(contrast(trayColor(ColorScheme::Light), blackTray), 3) << "a dark tray beside light windows";
}

// The host of the tray draws such an icon in its own colour.
TEST(TrayIconTest, isThatOfTheIconThemeWhereItHasOne) {
    const support::TemporaryFolder folder;
    folder.write("made-up/index.theme", "[Icon Theme]\nName=Made up\nDirectories=16\n[16]\nSize=16\n");
    std::filesystem::create_directory(folder.path("made-up/16"));
    QImage pixels(16, 16, QImage::Format_ARGB32);
    pixels.fill(Qt::white);
    EXPECT_TRUE(pixels.save(QString::fromStdString(folder.path("made-up/16/com.korvel.today-symbolic.png"))));
    EXPECT_EQ(trayIcon(TrayPicture::Usual, ColorScheme::Light).name(), QString());
    const QStringList paths = QIcon::themeSearchPaths();
    const QString theme = QIcon::themeName();
    QIcon::setThemeSearchPaths({QString::fromStdString(folder.path())});
    QIcon::setThemeName(QStringLiteral("made-up"));
    EXPECT_EQ(trayIcon(TrayPicture::Usual, ColorScheme::Light).name(),
              QStringLiteral("com.korvel.today-symbolic"));
    EXPECT_EQ(trayIcon(TrayPicture::Overdue, ColorScheme::Light).name(), QString())
        << "a theme without the other icon";
    QIcon::setThemeName(theme);
    QIcon::setThemeSearchPaths(paths);
}
