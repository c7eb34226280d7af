#include "panel/Snapshot.h"

#include "panel/Panel.h"
#include "platform/storage/Files.h"
#include "platform/storage/StorageError.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>

namespace panel {

void prepareSnapshot(const Snapshot& snapshot) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* name : {"QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "QT_ENABLE_HIGHDPI_SCALING",
                             "QT_SCALE_FACTOR_ROUNDING_POLICY", "QT_USE_PHYSICAL_DPI"})
        qunsetenv(name);
    qputenv("QT_SCALE_FACTOR", QByteArray::number(snapshot.scale));
    if (snapshot.locale.empty())
        return;
    qputenv("LC_ALL", QByteArray::fromStdString(snapshot.locale));
    qunsetenv("LANGUAGE");
}

bool writeSnapshot(const Snapshot& snapshot) {
    Panel panel(Backdrop::RoundTranslucent, Height::OfContent, snapshot.width);
    panel.load();
    return writePicture(panel.window(), snapshot);
}

bool writePicture(PanelWindow& window, const Snapshot& snapshot) {
    const QSize pixels(static_cast<int>(std::lround(window.width() * snapshot.scale)),
                       static_cast<int>(std::lround(window.height() * snapshot.scale)));
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(snapshot.scale);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren);

    QByteArray png;
    QBuffer buffer(&png);
    const std::string path = snapshot.file.toStdString();
    std::error_code fault = std::make_error_code(std::errc::io_error);
    if (buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png"))
        fault = platform::replaceFile(
            path, std::string_view(png.constData(), static_cast<std::size_t>(png.size())));
    if (fault)
        std::fprintf(stderr, "korvel-today: %s: %s\n", path.c_str(), fault.message().c_str());
    return platform::isMade(fault);
}

} // namespace panel
