#include "exchange/TodayWidgetLogic.h"

#include "exchange/CircularDrawing.h"
#include "exchange/SharedFiles.h"
#include "exchange/Text.h"
#include "platform/images/ImageFile.h"
#include "platform/images/OvalPicture.h"
#include "platform/storage/Files.h"
#include "platform/system/Fatal.h"

namespace {

// A name of so many UTF-16 code units or more is a picture's, a shorter one a glyph's. Nothing else tells
// them apart, on purpose: what the file holds is not looked at.
constexpr qsizetype pictureNameLength = 23;

// The pixels of a picture's file that its circular image shows. The others are not kept.
platform::KeptPixels pixelsOfPicture(const QSize& file, const QSizeF& size) {
    const QRectF drawing = exchange::circularDrawingRect(QSizeF(file), size);
    return platform::pixelsShownInOval(file, drawing, size, platform::screenRatio());
}

} // namespace

platform::Image TodayWidgetLogic::imageByName(const QString& name, const QRectF& rect) {
    const auto container = containerFolder();
    const auto account = accountPk();
    platform::require(container.has_value());
    const auto icons = exchange::iconsFolder(exchange::accountFolder(*container, account));
    const auto file = platform::pathByAppending(icons, exchange::utf8FromText(name) + ".png");
    if (name.size() >= pictureNameLength) {
        const auto shown = [&](const QSize& size) { return pixelsOfPicture(size, rect.size()); };
        return circularImage(platform::imageWithContentsOfFile(file, shown), rect);
    }
    const auto shown = [&](const QSize& size) {
        return platform::pixelsShownInView(size, rect.size(), platform::screenRatio());
    };
    const platform::Image image = platform::imageWithContentsOfFile(file, shown);
    // The host application writes a glyph before it names it in the feed: it is relied on to be there.
    platform::require(!image.isNull());
    return tintedImage(image);
}

// The picture within the oval of the rectangle's size; the rectangle's origin does not count.
platform::Image TodayWidgetLogic::circularImage(const platform::Image& image, const QRectF& rect) {
    if (image.size().isEmpty())
        return {};
    const QRectF drawing = exchange::circularDrawingRect(image.size(), rect.size());
    return platform::ovalPicture(image, drawing, rect.size(), platform::screenRatio());
}

platform::Image TodayWidgetLogic::tintedImage(const platform::Image& image) {
    return image.tinted(Qt::white);
}
