#include "platform/images/BoxFilter.h"

#include "platform/images/Pictures.h"

#include <gtest/gtest.h>

#include <random>

namespace platform {
namespace {

const QRgb* lineOf(const QImage& picture, int y) {
    return reinterpret_cast<const QRgb*>(picture.constScanLine(y));
}

QImage filtered(const QImage& picture, const KeptPixels& kept) {
    BoxFilter filter(picture.size(), kept);
    for (int y = 0; y < picture.height(); ++y)
        filter.addLine(y, lineOf(picture, y));
    return filter.pixels();
}

QImage filtered(const QImage& picture, const QSize& size) {
    return filtered(picture, allPixels(size));
}

// Shading, grain and soft edges, premultiplied.
QImage drawingLike(int width, int height) {
    QImage picture(width, height, QImage::Format_ARGB32);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int grain = static_cast<int>(random() % 20);
            const int alpha = (x / 7 + y / 11) % 3 * 127;
            picture.setPixel(x, y,
                             qRgba(x * 230 / width + grain, y * 230 / height + grain, grain * 9, alpha));
        }
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

TEST(BoxFilterTest, isTheMeanOfTheAreaThatAPixelCovers) {
    QImage picture = plainPicture(4, 2, red);
    picture.setPixel(1, 1, blue);
    const QImage result = filtered(picture, QSize(2, 1));
    EXPECT_EQ(result.pixel(0, 0), qRgb(191, 0, 64));
    EXPECT_EQ(result.pixel(1, 0), red);
}

TEST(BoxFilterTest, sharesAPixelThatLiesAcrossTwo) {
    QImage picture = plainPicture(3, 3, red);
    picture.setPixel(1, 1, blue);
    const QImage result = filtered(picture, QSize(2, 2)); // a quarter of the middle in each
    for (const QPoint at : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)})
        EXPECT_EQ(result.pixel(at), qRgb(227, 0, 28)) << at.x() << ' ' << at.y();
}

TEST(BoxFilterTest, givesEachLineItsOwnPlace) {
    QImage picture = plainPicture(3, 90, red);
    for (int y = 60; y < 90; ++y)
        for (int x = 0; x < 3; ++x)
            picture.setPixel(x, y, blue);
    const QImage result = filtered(picture, QSize(1, 4)); // 22.5 lines each
    EXPECT_EQ(result.pixel(0, 1), red);
    EXPECT_EQ(result.pixel(0, 2), qRgb(170, 0, 85));
    EXPECT_EQ(result.pixel(0, 3), blue);
}

TEST(BoxFilterTest, mixesPremultipliedPixels) {
    QImage picture = plainPicture(2, 1, red);
    picture.setPixel(1, 0, clear);
    EXPECT_EQ(*lineOf(filtered(picture, QSize(1, 1)), 0), qRgba(128, 0, 0, 128));
}

TEST(BoxFilterTest, looksAsTheToolkitsShrinkingDoes) {
    const QImage picture = drawingLike(500, 700);
    for (const QSize size : {QSize(38, 53), QSize(76, 38), QSize(250, 350), QSize(499, 3)}) {
        const QImage ours = filtered(picture, size);
        const QImage theirs = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const Difference difference = differenceOf(ours, theirs);
        EXPECT_LE(difference.most, 3) << size.width();
        EXPECT_LE(difference.mean, 0.75) << size.width();
    }
}

TEST(BoxFilterTest, keepsAPartOfTheShrunkPicture) {
    const QImage picture = drawingLike(200, 150);
    const QRect part(7, 11, 20, 5);
    EXPECT_EQ(filtered(picture, {QSize(63, 41), part}), filtered(picture, QSize(63, 41)).copy(part));
}

TEST(BoxFilterTest, keepsAPartOfAPictureThatIsNotShrunkAsItIs) {
    const QImage picture = drawingLike(200, 150);
    const QRect part(90, 60, 40, 38);
    EXPECT_EQ(filtered(picture, {picture.size(), part}), picture.copy(part));
    EXPECT_EQ(filtered(picture, picture.size()), picture);
}

TEST(BoxFilterTest, takesLinesInAnyOrderAndPiecesOfThem) {
    const QImage picture = drawingLike(100, 80);
    const KeptPixels kept = allPixels(QSize(30, 21));
    BoxFilter filter(picture.size(), kept);
    for (const int parity : {1, 0}) {
        for (int y = picture.height() - 1; y >= 0; --y) {
            QImage piece(picture.width(), 1, picture.format());
            piece.fill(Qt::transparent);
            for (int x = parity; x < picture.width(); x += 2)
                reinterpret_cast<QRgb*>(piece.scanLine(0))[x] = lineOf(picture, y)[x];
            filter.addLine(y, lineOf(piece, 0));
        }
    }
    EXPECT_EQ(filter.pixels(), filtered(picture, kept));
}

TEST(BoxFilterTest, doesNotOverflowInALongPicture) {
    const QImage line = plainPicture(1000000, 1, 0xffffffff);
    BoxFilter filter({1000000, 1000}, allPixels({1, 1}));
    for (int y = 0; y < 1000; ++y)
        filter.addLine(y, lineOf(line, 0));
    EXPECT_EQ(filter.pixels(), plainPicture(1, 1, 0xffffffff));
}

} // namespace
} // namespace platform
