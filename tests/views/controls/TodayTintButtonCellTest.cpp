#include "views/controls/TodayTintButtonCell.h"

#include "platform/views/Button.h"
#include "support/Application.h"
#include "support/Events.h"

#include <QFontMetricsF>
#include <QPainter>

#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

using platform::AttributedString;
using platform::Button;
using platform::Image;
using platform::View;

namespace {

Image filled(int width, int height, const QColor& color = Qt::red) {
    QImage pixels(width, height, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(color);
    return Image(pixels);
}

class TintButtonCell : public testing::Test {
protected:
    TintButtonCell() {
        root.setFrame(QRectF(0, 0, 400, 100));
        root.addSubview(button);
        button.setCell(cell);
        button.setBordered(false);
        button.setFrame(QRectF(0, 0, 50, 50));
    }

    // The picture that drawImage paints for a rectangle.
    QImage drawnImage(const Image& image, const QRectF& rect) {
        return drawn([&](QPainter& painter) { cell->drawImage(painter, image, rect, button); });
    }
    QImage drawnTitle(const AttributedString& title, const QRectF& rect) {
        return drawn([&](QPainter& painter) { returned = cell->drawTitle(painter, title, rect, button); });
    }

    View root;
    Button button;
    std::shared_ptr<TodayTintButtonCell> cell = std::make_shared<TodayTintButtonCell>();
    QRectF returned;

private:
    template <class Draw>
    static QImage drawn(const Draw& draw) {
        QImage canvas(400, 100, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        draw(painter);
        painter.end();
        return canvas;
    }
};

TEST_F(TintButtonCell, isWhiteCentredAndWithoutOffsetsAtFirst) {
    EXPECT_EQ(cell->tintColor, QColor(Qt::white));
    EXPECT_EQ(cell->titleXOffset, 0);
    EXPECT_EQ(cell->titleYOffset, 0);
    EXPECT_TRUE(cell->imageCenterX);
}

// --- the image's place

TEST_F(TintButtonCell, centresTheImage) {
    EXPECT_EQ(support::inkOf(drawnImage(filled(20, 20), button.bounds())), QRect(15, 15, 20, 20));
}

TEST_F(TintButtonCell, truncatesTheCentreToAWholePoint) {
    EXPECT_EQ(support::inkOf(drawnImage(filled(21, 20), button.bounds())), QRect(14, 15, 21, 20));
    EXPECT_EQ(support::inkOf(drawnImage(filled(20, 21), button.bounds())), QRect(15, 14, 20, 21));
}

TEST_F(TintButtonCell, truncatesTowardsZeroWhereTheImageIsLarger) {
    EXPECT_EQ(cell->imageRect({53, 51}, button), QRectF(-1, 0, 53, 51)) << "-1.5 and -0.5";
    EXPECT_EQ(cell->imageRect({80, 90}, button), QRectF(-15, -20, 80, 90));
}

TEST_F(TintButtonCell, standsALeadingImageAtTheLeftWhereReadingStartsThere) {
    cell->imageCenterX = false;
    EXPECT_EQ(support::inkOf(drawnImage(filled(20, 20), button.bounds())), QRect(0, 15, 20, 20));
}

TEST_F(TintButtonCell, standsALeadingImageAtTheRightWhereReadingStartsThere) {
    cell->imageCenterX = false;
    root.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(support::inkOf(drawnImage(filled(20, 20), button.bounds())), QRect(30, 15, 20, 20));
}

TEST_F(TintButtonCell, doesNotTruncateTheRightToLeftPlace) {
    cell->imageCenterX = false;
    root.setLayoutDirection(Qt::RightToLeft);
    button.setFrame(QRectF(0, 0, 50.5, 50));
    EXPECT_EQ(cell->imageRect({20, 20}, button), QRectF(30.5, 15, 20, 20));
}

TEST_F(TintButtonCell, centresTheImageInBothDirections) {
    root.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(cell->imageRect({20, 20}, button), QRectF(15, 15, 20, 20));
}

TEST_F(TintButtonCell, readsTheDirectionOfTheSuperview) {
    cell->imageCenterX = false;
    button.setLayoutDirection(Qt::RightToLeft); // has no effect
    EXPECT_EQ(cell->imageRect({20, 20}, button).x(), 0);
    EXPECT_EQ(cell->titleRect(QRectF(0, 0, 300, 36), button).width(), 300);
}

TEST_F(TintButtonCell, placesTheImageByTheButtonNotByTheRectangle) {
    for (const QRectF& rect : {QRectF(10, 12, 5, 5), QRectF(), QRectF(100, 100, 500, 500)})
        EXPECT_EQ(support::inkOf(drawnImage(filled(20, 20), rect)), QRect(15, 15, 20, 20));
}

TEST_F(TintButtonCell, placesTheImageByTheFramesSizeNotItsOrigin) {
    button.setFrame(QRectF(95, 7, 50, 50));
    EXPECT_EQ(cell->imageRect({20, 20}, button), QRectF(15, 15, 20, 20));
}

// --- the image's colour

TEST_F(TintButtonCell, drawsTheImageInItsColourAndTheImagesTransparency) {
    QImage pixels(4, 1, QImage::Format_ARGB32_Premultiplied);
    pixels.setPixelColor(0, 0, QColor(255, 0, 0));
    pixels.setPixelColor(1, 0, QColor(0, 0, 0, 128));
    pixels.setPixelColor(2, 0, QColor(0, 255, 0, 1));
    pixels.setPixelColor(3, 0, QColor(0, 0, 0, 0));
    cell->tintColor = QColor(255, 255, 255);
    const QRect place = cell->imageRect({4, 1}, button).toRect();
    const QImage image = drawnImage(Image(pixels), button.bounds());
    EXPECT_EQ(image.pixelColor(place.topLeft()), QColor(255, 255, 255, 255));
    EXPECT_EQ(image.pixelColor(place.topLeft() + QPoint(1, 0)), QColor(255, 255, 255, 128));
    EXPECT_EQ(image.pixelColor(place.topLeft() + QPoint(2, 0)).alpha(), 1);
    EXPECT_EQ(image.pixelColor(place.topLeft() + QPoint(3, 0)).alpha(), 0);
}

TEST_F(TintButtonCell, changesNothingOfTheImageItself) {
    const Image image = filled(4, 4, QColor(200, 10, 10));
    drawnImage(image, button.bounds());
    EXPECT_EQ(image.pixels(1).pixelColor(2, 2), QColor(200, 10, 10));
}

TEST_F(TintButtonCell, takesAnotherColourAtTheNextDrawing) {
    const Image image = filled(20, 20);
    EXPECT_EQ(drawnImage(image, button.bounds()).pixelColor(25, 25), QColor(Qt::white));
    cell->tintColor = QColor(1, 2, 3);
    EXPECT_EQ(drawnImage(image, button.bounds()).pixelColor(25, 25), QColor(1, 2, 3));
}

TEST_F(TintButtonCell, isWhatItsButtonPaints) {
    button.setImage(filled(20, 20));
    const QImage image = support::painted(button);
    EXPECT_EQ(support::inkOf(image), QRect(15, 15, 20, 20));
    EXPECT_EQ(image.pixelColor(25, 25), QColor(Qt::white));
}

// --- the title

TEST_F(TintButtonCell, placesTheTitleByItsOffsets) {
    cell->titleXOffset = 50;
    cell->titleYOffset = 8;
    EXPECT_EQ(cell->titleRect(QRectF(0, 0, 300, 36), button), QRectF(50, 8, 300, 36))
        << "the whole width, although it starts further in";
    root.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(cell->titleRect(QRectF(0, 0, 300, 36), button), QRectF(0, 8, 250, 36));
}

TEST_F(TintButtonCell, doesNotLookAtTheRectanglesOrigin) {
    cell->titleXOffset = 50;
    cell->titleYOffset = 8;
    EXPECT_EQ(cell->titleRect(QRectF(13, 17, 300, 36), button), QRectF(50, 8, 300, 36));
    root.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(cell->titleRect(QRectF(13, 17, 300, 36), button), QRectF(0, 8, 250, 36));
}

TEST_F(TintButtonCell, drawsTheTitleThereAndReturnsTheRectangle) {
    cell->titleXOffset = 50;
    cell->titleYOffset = 8;
    QFont font;
    font.setPixelSize(15);
    const AttributedString title{QStringLiteral("Hxx"), font};
    const double ascent = QFontMetricsF(font).ascent();
    const QRectF rect(3, 4, 300, 36);

    const QRect left = support::inkOf(drawnTitle(title, rect));
    EXPECT_EQ(returned, rect);
    EXPECT_NEAR(left.left(), 51, 2);
    EXPECT_NEAR(left.bottom() + 1, 8 + ascent, 1.5) << "the offset counts from the top";

    root.setLayoutDirection(Qt::RightToLeft);
    const QRect right = support::inkOf(drawnTitle(title, rect));
    EXPECT_EQ(returned, rect);
    EXPECT_NEAR(right.right(), 248, 2);
    EXPECT_EQ(right.top(), left.top());
}

TEST_F(TintButtonCell, drawsNoEmptyTitleAndReturnsTheRectangle) {
    const QRectF rect(3, 4, 300, 36);
    EXPECT_TRUE(support::inkOf(drawnTitle({}, rect)).isNull());
    EXPECT_EQ(returned, rect);
}

TEST_F(TintButtonCell, drawsTheTitleInItsOwnColour) {
    const AttributedString title{QStringLiteral("███"), QFont(), QColor(9, 99, 199)};
    const QImage image = drawnTitle(title, QRectF(0, 0, 300, 36));
    EXPECT_EQ(image.pixelColor(support::inkOf(image).center()), QColor(9, 99, 199));
}

// --- pressing

TEST_F(TintButtonCell, dimsTheWholeButtonWhilePressed) {
    cell->highlight(true, {}, button);
    EXPECT_EQ(button.alphaValue(), 0.5);
    cell->highlight(false, {}, button);
    EXPECT_EQ(button.alphaValue(), 1);
}

TEST_F(TintButtonCell, isToldOfRealPresses) {
    support::showWindow(root, 400, 100);
    support::press(button, {25, 25});
    EXPECT_EQ(button.alphaValue(), 0.5);
    support::release(button, {25, 25});
    EXPECT_EQ(button.alphaValue(), 1);
}

// --- faults

class TintButtonCellDeathTest : public TintButtonCell {
protected:
    TintButtonCellDeathTest() { alone.setFrame(QRectF(0, 0, 50, 50)); }

    Button alone;
};

TEST_F(TintButtonCellDeathTest, aLeadingImageWithoutASuperviewIsFatal) {
    cell->imageCenterX = false;
    QImage canvas(50, 50, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    EXPECT_EXIT(cell->drawImage(painter, filled(20, 20), {}, alone), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TintButtonCellDeathTest, aTitleWithoutASuperviewIsFatal) {
    QImage canvas(50, 50, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    EXPECT_EXIT(cell->drawTitle(painter, {QStringLiteral("x"), QFont()}, {}, alone),
                testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TintButtonCellDeathTest, whatNeedsNoDirectionNeedsNoSuperview) {
    EXPECT_EQ(cell->imageRect({20, 20}, alone), QRectF(15, 15, 20, 20));
    QImage canvas(50, 50, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    EXPECT_EQ(cell->drawTitle(painter, {}, QRectF(1, 2, 3, 4), alone), QRectF(1, 2, 3, 4));
}

TEST_F(TintButtonCellDeathTest, noImageIsFatal) {
    QImage canvas(50, 50, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    EXPECT_EXIT(cell->drawImage(painter, Image(), {}, button), testing::KilledBySignal(SIGABRT), "^$");
}

TEST_F(TintButtonCellDeathTest, aPlaceThatNoIntegerHoldsIsFatal) {
    for (const double width :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), 4e19, -4e19}) {
        EXPECT_EXIT((void)cell->imageRect({width, 20}, button), testing::KilledBySignal(SIGABRT), "^$");
        EXPECT_EXIT((void)cell->imageRect({20, width}, button), testing::KilledBySignal(SIGABRT), "^$");
    }
}

TEST_F(TintButtonCellDeathTest, aPlaceThatAnIntegerJustHoldsIsNot) {
    EXPECT_EQ(cell->imageRect({18446744073709551616.0, 20}, button).x(), -9223372036854775808.0);
}

} // namespace
