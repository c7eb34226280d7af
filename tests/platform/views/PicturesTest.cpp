#include "platform/views/Box.h"
#include "platform/views/ImageView.h"
#include "platform/views/LayerView.h"

#include "support/Application.h"

#include <gtest/gtest.h>
#include <string>

using platform::Box;
using platform::Image;
using platform::ImageView;
using platform::LayerView;

namespace {

Image filled(int width, int height, const QColor& color = Qt::red) {
    QImage pixels(width, height, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(color);
    return Image(pixels);
}

// --- image views

struct Placement {
    const char* name;
    QSize image;
    QRect place; // in a view of 40 by 30
};

class ImageViewPlacement : public testing::TestWithParam<Placement> {};

TEST_P(ImageViewPlacement, isInTheMiddleScaledDownInProportionNeverUp) {
    ImageView view;
    view.setFrame(QRectF(0, 0, 40, 30));
    view.setImage(filled(GetParam().image.width(), GetParam().image.height()));
    EXPECT_EQ(support::inkOf(support::painted(view)), GetParam().place);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ImageViewPlacement,
                         testing::Values(Placement{"asItIs", {40, 30}, {0, 0, 40, 30}},
                                         Placement{"smaller", {20, 10}, {10, 10, 20, 10}},
                                         Placement{"smallerOnHalfPoints", {21, 11}, {9, 9, 21, 11}},
                                         Placement{"onePoint", {1, 1}, {19, 14, 1, 1}},
                                         Placement{"twiceAsLarge", {80, 60}, {0, 0, 40, 30}},
                                         Placement{"tooWide", {80, 10}, {0, 12, 40, 5}},
                                         Placement{"tooHigh", {10, 60}, {17, 0, 5, 30}},
                                         Placement{"tooLargeAndSquare", {300, 300}, {5, 0, 30, 30}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ImageView, withoutAnImagePaintsNothing) {
    ImageView view;
    view.setFrame(QRectF(0, 0, 40, 30));
    EXPECT_TRUE(support::inkOf(support::painted(view)).isNull());
    view.setImage(filled(10, 10));
    view.setImage(Image());
    EXPECT_TRUE(support::inkOf(support::painted(view)).isNull());
}

TEST(ImageView, ofADenseImageGoesByItsPoints) {
    QImage pixels(40, 40, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::red);
    pixels.setDevicePixelRatio(2);
    ImageView view;
    view.setFrame(QRectF(0, 0, 40, 30));
    view.setImage(Image(pixels));
    EXPECT_EQ(support::inkOf(support::painted(view)), QRect(10, 5, 20, 20));
}

TEST(ImageView, ofNoSizePaintsNothing) {
    ImageView view;
    view.setFrame(QRectF(0, 0, 0, 30));
    view.setImage(filled(10, 10));
    EXPECT_EQ(view.image().size(), QSizeF(10, 10));
    view.setFrame(QRectF(0, 0, 40, 30));
    EXPECT_EQ(support::inkOf(support::painted(view)), QRect(15, 10, 10, 10));
}

// --- boxes

TEST(Box, isTransparentUntilItIsFilled) {
    Box box;
    box.setFrame(QRectF(0, 0, 20, 20));
    EXPECT_TRUE(support::inkOf(support::painted(box)).isNull());
    box.setFillColor(QColor(10, 20, 30));
    EXPECT_EQ(box.fillColor(), QColor(10, 20, 30));
    const QImage image = support::painted(box);
    EXPECT_EQ(support::inkOf(image), QRect(0, 0, 20, 20));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
}

TEST(Box, mayBeTranslucent) {
    Box box;
    box.setFrame(QRectF(0, 0, 20, 20));
    box.setFillColor(QColor::fromRgbF(0.5F, 0.5F, 0.5F, 0.33F));
    EXPECT_EQ(support::painted(box).pixelColor(10, 10).alpha(), 84);
}

class RoundCorners : public testing::Test {
protected:
    RoundCorners() {
        layer.setFrame(QRectF(0, 0, 40, 40));
        layer.addSubview(box);
        box.setFrame(QRectF(0, 0, 40, 40));
        box.setFillColor(Qt::red);
        layer.setCornerRadius(10);
        layer.setMasksToBounds(true);
    }

    LayerView layer;
    Box box;
};

TEST_F(RoundCorners, areCutFromABoxInside) {
    const QImage image = support::painted(layer);
    for (const QPoint corner : {QPoint(0, 0), QPoint(39, 0), QPoint(0, 39), QPoint(39, 39), QPoint(1, 1)})
        EXPECT_EQ(image.pixelColor(corner).alpha(), 0) << corner.x() << ' ' << corner.y();
    // (1 - 1/sqrt 2) * 10 is 2.93: the arc's middle, from either side.
    EXPECT_EQ(image.pixelColor(4, 4), QColor(Qt::red));
    EXPECT_LT(image.pixelColor(2, 2).alpha(), 128);
    for (const QPoint edge : {QPoint(20, 0), QPoint(0, 20), QPoint(39, 20), QPoint(20, 39)})
        EXPECT_EQ(image.pixelColor(edge), QColor(Qt::red)) << edge.x() << ' ' << edge.y();
}

TEST_F(RoundCorners, areSmooth) {
    const QImage image = support::painted(layer);
    bool isSmooth = false;
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            const int alpha = image.pixelColor(x, y).alpha();
            isSmooth = isSmooth || (alpha > 0 && alpha < 255);
        }
    EXPECT_TRUE(isSmooth);
}

TEST_F(RoundCorners, areTheLayersNotTheBoxes) {
    box.setFrame(QRectF(20, 0, 20, 40));
    const QImage image = support::painted(layer);
    EXPECT_EQ(image.pixelColor(20, 0), QColor(Qt::red))
        << "the box's own left edge is no corner of the layer";
    EXPECT_EQ(image.pixelColor(39, 0).alpha(), 0);
    EXPECT_EQ(image.pixelColor(19, 20).alpha(), 0);
}

TEST_F(RoundCorners, areCutOnlyWhereTheLayerMasks) {
    layer.setMasksToBounds(false);
    EXPECT_EQ(support::painted(layer).pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(RoundCorners, ofNoRadiusCutNothing) {
    layer.setCornerRadius(0);
    EXPECT_EQ(support::painted(layer).pixelColor(0, 0), QColor(Qt::red));
}

TEST_F(RoundCorners, followTheLayersSize) {
    layer.setFrame(QRectF(0, 0, 60, 40));
    box.setFrame(QRectF(0, 0, 60, 40));
    const QImage image = support::painted(layer);
    EXPECT_EQ(image.pixelColor(39, 0), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(59, 0).alpha(), 0);
}

TEST_F(RoundCorners, haveSharpEdgesAtEachScale) {
    layer.setFrame(QRectF(0, 0, 41, 41));
    box.setFrame(QRectF(0, 0, 41, 41));
    for (const double scale : {1.25, 1.5, 1.75}) {
        for (const int y : {0, 1, 2, 3}) {
            QImage image(80, 80, QImage::Format_ARGB32_Premultiplied);
            image.setDevicePixelRatio(scale);
            image.fill(Qt::transparent);
            layer.render(&image, QPoint(y, y), QRegion(), QWidget::DrawChildren);
            image.setDevicePixelRatio(1);
            const QPoint middle = support::inkOf(image).center();
            for (int along = 0; along < 80; ++along) {
                for (const QPoint at : {QPoint(along, middle.y()), QPoint(middle.x(), along)}) {
                    const int alpha = image.pixelColor(at).alpha();
                    ASSERT_TRUE(alpha == 0 || alpha == 255)
                        << alpha << " at " << at.x() << ", " << at.y() << " of " << scale;
                }
            }
        }
    }
}

TEST(LayerView, isPlainAtFirst) {
    const LayerView layer;
    EXPECT_EQ(layer.cornerRadius(), 0);
    EXPECT_FALSE(layer.masksToBounds());
}

} // namespace
