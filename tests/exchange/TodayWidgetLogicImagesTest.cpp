#include "exchange/CircularDrawing.h"
#include "exchange/TodayWidgetLogic.h"
#include "model/GroupIdentifiers.h"
#include "platform/images/ImageFile.h"
#include "platform/images/OvalPicture.h"
#include "platform/images/Pictures.h"
#include "platform/images/PngWriter.h"
#include "platform/storage/GroupContainers.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <sys/resource.h>
#include <vector>

namespace exchange {
namespace {

constexpr QRgb red = 0xffff0000, green = 0xff00ff00, blue = 0xff0000ff, clear = 0;

const QString glyphName = QStringLiteral("groceries");
const QString pictureName = QStringLiteral("3F2504E0-4F89-11D3-9A0C");
const QRectF fortyByForty(7, -9, 40, 40); // its origin is of no account

// A container of the full edition's group in a scratch folder, with the icons of the account without a key.
class TodayWidgetLogicImagesTest : public testing::Test {
protected:
    TodayWidgetLogicImagesTest() {
        platform::GroupContainers::setFolder(scratch.path().toStdString());
        QDir().mkpath(container() + QStringLiteral("/-/icons"));
    }
    ~TodayWidgetLogicImagesTest() override { platform::GroupContainers::setFolder({}); }

    QString container() const {
        const std::string_view group = fullEditionGroupIdentifier;
        return scratch.filePath(QString::fromUtf8(group.data(), static_cast<qsizetype>(group.size())));
    }

    // A path below the container, with its folders made.
    QString made(const QString& relative) const {
        const QString path = container() + QLatin1Char('/') + relative;
        QDir().mkpath(QFileInfo(path).path());
        return path;
    }

    void writeIcon(const QString& name, const QImage& picture,
                   const QString& folder = QStringLiteral("-/icons")) const {
        EXPECT_TRUE(picture.save(made(folder + QLatin1Char('/') + name + QStringLiteral(".png")), "PNG"));
    }

    void writeBytes(const QString& relative, const QByteArray& bytes) const {
        QFile file(made(relative));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    void setAccountKey(const QByteArray& key) const {
        const std::string group(fullEditionGroupIdentifier);
        writeBytes(QStringLiteral("Library/Preferences/%1.plist").arg(QString::fromStdString(group)),
                   "<plist><dict><key>account_pk</key><string>" + key + "</string></dict></plist>");
    }

    // The pixels of a picture of so many points, drawn into a rectangle.
    QImage circular(const QImage& picture, const QRectF& rect) const {
        writeIcon(pictureName, picture);
        return TodayWidgetLogic::imageByName(pictureName, rect).pixels(1);
    }

    QTemporaryDir scratch;
};

using TodayWidgetLogicImagesDeathTest = TodayWidgetLogicImagesTest;

QImage plainPicture(int width, int height, QRgb color) {
    QImage picture(width, height, QImage::Format_ARGB32);
    picture.fill(color);
    return picture;
}

// Each pixel tells its own place: x in red, y in green.
QImage mapPicture(int width, int height) {
    QImage picture = plainPicture(width, height, blue);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.setPixel(x, y, qRgb(x, y, 255));
    return picture;
}

QRgb pixelAt(const QImage& pixels, int x, int y) {
    return reinterpret_cast<const QRgb*>(pixels.constScanLine(y))[x];
}

// Whether a pixel shows a mapPicture's place, give or take a rounding.
testing::AssertionResult shows(QRgb pixel, double x, double y) {
    const bool right =
        qAlpha(pixel) == 255 && std::abs(qRed(pixel) - x) <= 1 && std::abs(qGreen(pixel) - y) <= 1;
    return (right ? testing::AssertionSuccess() : testing::AssertionFailure())
           << "shows " << qRed(pixel) << ", " << qGreen(pixel) << " at alpha " << qAlpha(pixel);
}

// --- which preparation

TEST_F(TodayWidgetLogicImagesTest, takesANameOf22CharactersForAGlyph) {
    const QString name(22, QLatin1Char('g'));
    writeIcon(name, plainPicture(100, 50, red));
    const platform::Image image = TodayWidgetLogic::imageByName(name, fortyByForty);
    EXPECT_EQ(image.size(), QSizeF(100, 50));
    EXPECT_EQ(image.pixels(1).convertToFormat(QImage::Format_ARGB32), plainPicture(100, 50, 0xffffffff));
}

TEST_F(TodayWidgetLogicImagesTest, takesANameOf23CharactersForAPicture) {
    const QString name(23, QLatin1Char('p'));
    writeIcon(name, plainPicture(100, 100, red));
    const platform::Image image = TodayWidgetLogic::imageByName(name, fortyByForty);
    EXPECT_EQ(image.size(), QSizeF(40, 40));
    EXPECT_EQ(pixelAt(image.pixels(1), 20, 20), red);
    EXPECT_EQ(pixelAt(image.pixels(1), 0, 0), clear);
}

TEST_F(TodayWidgetLogicImagesTest, countsCharactersInUtf16CodeUnits) {
    // Twelve code points beyond the first plane are 24 code units and 48 bytes.
    const QString picture = QString::fromUtf8("\xF0\x9F\x8D\x8E").repeated(12);
    writeIcon(picture, plainPicture(100, 100, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(picture, fortyByForty).size(), QSizeF(40, 40));
    const QString glyph = QString::fromUtf8("\xF0\x9F\x8D\x8E").repeated(11);
    writeIcon(glyph, plainPicture(100, 100, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyph, fortyByForty).size(), QSizeF(100, 100));
    // 22 letters of two bytes each are 22.
    const QString letters = QString::fromUtf8("\xD0\xB6").repeated(22);
    writeIcon(letters, plainPicture(100, 100, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(letters, fortyByForty).size(), QSizeF(100, 100));
}

// --- which file

TEST_F(TodayWidgetLogicImagesTest, looksInTheAccountsFolder) {
    setAccountKey("42");
    writeIcon(glyphName, plainPicture(10, 10, red), QStringLiteral("42/icons"));
    writeIcon(glyphName, plainPicture(20, 20, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, fortyByForty).size(), QSizeF(10, 10));
}

TEST_F(TodayWidgetLogicImagesTest, looksInAFolderNamedByAHyphenWithoutAnAccountKey) {
    writeIcon(glyphName, plainPicture(20, 20, red), QStringLiteral("-/icons"));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, fortyByForty).size(), QSizeF(20, 20));
}

TEST_F(TodayWidgetLogicImagesTest, looksInTheContainerForAnEmptyAccountKey) {
    setAccountKey("");
    writeIcon(glyphName, plainPicture(10, 10, red), QStringLiteral("icons"));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, fortyByForty).size(), QSizeF(10, 10));
}

TEST_F(TodayWidgetLogicImagesTest, takesTheNameAsItStands) {
    for (const char* name : {"Bakery & Co #1 %20", "GYM", "a.b", "icon@2x", " ", "\xD0\x96"}) {
        const QString text = QString::fromUtf8(name);
        writeIcon(text, plainPicture(12, 12, red));
        EXPECT_EQ(TodayWidgetLogic::imageByName(text, fortyByForty).size(), QSizeF(12, 12)) << name;
    }
}

TEST_F(TodayWidgetLogicImagesTest, readsTheFileAtEachCall) {
    writeIcon(glyphName, plainPicture(10, 10, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, fortyByForty).size(), QSizeF(10, 10));
    writeIcon(glyphName, plainPicture(20, 20, red));
    EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, fortyByForty).size(), QSizeF(20, 20));
}

// --- glyphs

TEST_F(TodayWidgetLogicImagesTest, turnsAGlyphWhiteAndKeepsItsTransparency) {
    QImage glyph(256, 2, QImage::Format_ARGB32);
    for (int alpha = 0; alpha < 256; ++alpha) {
        glyph.setPixel(alpha, 0, qRgba(10, 200, 30, alpha));
        glyph.setPixel(alpha, 1, qRgba(0, 0, 0, alpha));
    }
    writeIcon(glyphName, glyph);
    const QImage white = TodayWidgetLogic::imageByName(glyphName, fortyByForty).pixels(1);
    for (int alpha = 0; alpha < 256; ++alpha) {
        EXPECT_EQ(pixelAt(white, alpha, 0), qRgba(alpha, alpha, alpha, alpha));
        EXPECT_EQ(pixelAt(white, alpha, 1), qRgba(alpha, alpha, alpha, alpha));
    }
}

TEST_F(TodayWidgetLogicImagesTest, usesNoRectangleForAGlyph) {
    writeIcon(glyphName, plainPicture(30, 20, red));
    for (const QRectF& rect : {QRectF(), QRectF(0, 0, -5, 3), QRectF(0, 0, 1e9, 1e9), fortyByForty})
        EXPECT_EQ(TodayWidgetLogic::imageByName(glyphName, rect).size(), QSizeF(30, 20));
}

// --- pictures

TEST_F(TodayWidgetLogicImagesTest, givesNoIconForAPictureThatIsMissing) {
    EXPECT_TRUE(TodayWidgetLogic::imageByName(pictureName, fortyByForty).isNull());
}

TEST_F(TodayWidgetLogicImagesTest, givesNoIconForAPictureThatIsNoImage) {
    writeBytes(QStringLiteral("-/icons/%1.png").arg(pictureName), "no image");
    EXPECT_TRUE(TodayWidgetLogic::imageByName(pictureName, fortyByForty).isNull());
}

TEST_F(TodayWidgetLogicImagesTest, givesNoIconForARectangleWithoutASensibleSize) {
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    constexpr qreal infinity = std::numeric_limits<qreal>::infinity();
    writeIcon(pictureName, plainPicture(100, 50, red));
    writeIcon(pictureName + QLatin1Char('t'), plainPicture(50, 100, red));
    for (const QString& name : {pictureName, pictureName + QLatin1Char('t')}) {
        for (const qreal bad : {0.0, -40.0, nan, infinity, -infinity, 1e9}) {
            EXPECT_TRUE(TodayWidgetLogic::imageByName(name, QRectF(0, 0, bad, 40)).isNull()) << bad;
            EXPECT_TRUE(TodayWidgetLogic::imageByName(name, QRectF(0, 0, 40, bad)).isNull()) << bad;
        }
    }
}

TEST_F(TodayWidgetLogicImagesTest, doesNotUseTheRectanglesOrigin) {
    const QImage here = circular(mapPicture(60, 60), QRectF(0, 0, 40, 40));
    EXPECT_EQ(circular(mapPicture(60, 60), QRectF(-1000, 0.5, 40, 40)), here);
    constexpr qreal nan = std::numeric_limits<qreal>::quiet_NaN();
    EXPECT_EQ(circular(mapPicture(60, 60), QRectF(nan, nan, 40, 40)), here);
}

TEST_F(TodayWidgetLogicImagesTest, clipsToTheOvalOfTheRectangle) {
    const QImage pixels = circular(plainPicture(100, 100, red), QRectF(0, 0, 40, 20));
    ASSERT_EQ(pixels.size(), QSize(40, 20));
    for (const QPoint in : {QPoint(20, 1), QPoint(20, 18), QPoint(2, 10), QPoint(37, 10), QPoint(8, 4)})
        EXPECT_EQ(pixelAt(pixels, in.x(), in.y()), red) << in.x() << ' ' << in.y();
    for (const QPoint out : {QPoint(0, 0), QPoint(39, 0), QPoint(0, 19), QPoint(39, 19), QPoint(3, 2)})
        EXPECT_EQ(pixelAt(pixels, out.x(), out.y()), clear) << out.x() << ' ' << out.y();
}

// --- the drawing rectangle, as numbers and as pixels

TEST_F(TodayWidgetLogicImagesTest, neverShrinksAWidePicture) {
    EXPECT_EQ(circularDrawingRect({100, 50}, {40, 40}), QRectF(-30, -5, 100, 50));
    const QImage pixels = circular(mapPicture(100, 50), fortyByForty);
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 20), 50, 25));
    EXPECT_TRUE(shows(pixelAt(pixels, 2, 20), 32, 25));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 1), 50, 6));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 38), 50, 43));
    EXPECT_EQ(pixelAt(pixels, 0, 0), clear);
}

TEST_F(TodayWidgetLogicImagesTest, growsANarrowWidePictureToTheWidthOnly) {
    EXPECT_EQ(circularDrawingRect({20, 10}, {40, 40}), QRectF(0, 10, 40, 20));
    const QImage pixels = circular(mapPicture(20, 10), fortyByForty);
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 20), 10, 5));
    EXPECT_TRUE(shows(pixelAt(pixels, 30, 28), 15, 9));
    EXPECT_EQ(pixelAt(pixels, 20, 9), clear);
    EXPECT_EQ(qAlpha(pixelAt(pixels, 20, 10)), 255);
    EXPECT_EQ(qAlpha(pixelAt(pixels, 20, 29)), 255);
    EXPECT_EQ(pixelAt(pixels, 20, 30), clear);
}

TEST_F(TodayWidgetLogicImagesTest, leavesAWidePictureOfTheWidthAsItIs) {
    EXPECT_EQ(circularDrawingRect({40, 10}, {40, 40}), QRectF(0, 15, 40, 10));
    const QImage pixels = circular(mapPicture(40, 10), fortyByForty);
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 15), 20, 0));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 24), 20, 9));
    EXPECT_EQ(pixelAt(pixels, 20, 14), clear);
    EXPECT_EQ(pixelAt(pixels, 20, 25), clear);
}

TEST_F(TodayWidgetLogicImagesTest, coversTheRectangleWithATallPicture) {
    EXPECT_EQ(circularDrawingRect({50, 100}, {40, 40}), QRectF(0, -20, 40, 80));
    const QImage pixels = circular(mapPicture(50, 100), fortyByForty);
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 20), 25.1, 50.1));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 1), 25.1, 26.4));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 38), 25.1, 72.6));
    EXPECT_TRUE(shows(pixelAt(pixels, 2, 20), 2.6, 50.1));
}

TEST_F(TodayWidgetLogicImagesTest, keepsTheWidthWhereItCoversAFlatRectangle) {
    EXPECT_EQ(circularDrawingRect({100, 100}, {40, 30}), QRectF(0, -5, 40, 40));
    const QImage pixels = circular(mapPicture(100, 100), QRectF(0, 0, 40, 30));
    ASSERT_EQ(pixels.size(), QSize(40, 30));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 15), 50.75, 50.75));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 1), 50.75, 15.75));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 28), 50.75, 83.25));
}

TEST_F(TodayWidgetLogicImagesTest, takesTheHeightWhereTheWidthDoesNotCover) {
    EXPECT_EQ(circularDrawingRect({100, 100}, {30, 40}), QRectF(-5, 0, 40, 40));
    const QImage pixels = circular(mapPicture(100, 100), QRectF(0, 0, 30, 40));
    ASSERT_EQ(pixels.size(), QSize(30, 40));
    EXPECT_TRUE(shows(pixelAt(pixels, 15, 20), 50.75, 50.75));
    EXPECT_TRUE(shows(pixelAt(pixels, 1, 20), 15.75, 50.75));
}

TEST_F(TodayWidgetLogicImagesTest, drawsAnOddDifferenceOfSizesAtHalfPoints) {
    EXPECT_EQ(circularDrawingRect({101, 9}, {40, 40}), QRectF(-30.5, 15.5, 101, 9));
    QImage striped = plainPicture(101, 9, red);
    for (int y = 0; y < 9; ++y)
        for (int x = 1; x < 101; x += 2)
            striped.setPixel(x, y, blue);
    const QImage pixels = circular(striped, fortyByForty);
    for (int x = 5; x < 35; ++x) {
        EXPECT_NEAR(qRed(pixelAt(pixels, x, 20)), 128, 2) << x;
        EXPECT_NEAR(qAlpha(pixelAt(pixels, x, 15)), 128, 2) << x;
        EXPECT_NEAR(qAlpha(pixelAt(pixels, x, 24)), 128, 2) << x;
    }
    EXPECT_EQ(circularDrawingRect({40, 41}, {40, 40}), QRectF(0, -0.5, 40, 41));
}

TEST_F(TodayWidgetLogicImagesTest, growsASmallSquarePicture) {
    EXPECT_EQ(circularDrawingRect({10, 10}, {40, 40}), QRectF(0, 0, 40, 40));
    const QImage pixels = circular(plainPicture(10, 10, green), fortyByForty);
    EXPECT_EQ(pixelAt(pixels, 20, 1), green);
    EXPECT_EQ(pixelAt(pixels, 1, 20), green);
    EXPECT_EQ(pixelAt(pixels, 38, 20), green);
    EXPECT_EQ(pixelAt(pixels, 0, 0), clear);
}

TEST_F(TodayWidgetLogicImagesTest, leavesTheHeightUncoveredByAWidePicture) {
    EXPECT_EQ(circularDrawingRect({50, 20}, {40, 60}), QRectF(-5, 20, 50, 20));
    const QImage pixels = circular(mapPicture(50, 20), QRectF(0, 0, 40, 60));
    EXPECT_TRUE(shows(pixelAt(pixels, 20, 30), 25, 10));
    EXPECT_EQ(pixelAt(pixels, 20, 19), clear);
    EXPECT_EQ(pixelAt(pixels, 20, 40), clear);
}

// --- large files

// Shading under a soft grain, with some clear pixels.
QImage shadedPicture(int width, int height) {
    QImage picture(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.setPixel(x, y,
                             qRgba(x * 250 / width, y * 250 / height, (x * 7 + y * 13) % 60,
                                   (x / 31 + y / 17) % 5 == 0 ? (x + y) % 256 : 255));
    return picture;
}

// What an image view of 40 by 40 points shows of an image that is larger.
QImage shownInView(const platform::Image& image) {
    QImage canvas = platform::plainPicture(40, 40, clear);
    QRectF place({}, image.size().scaled(40, 40, Qt::KeepAspectRatio));
    place.moveCenter(QPointF(20, 20));
    place.moveTo(std::floor(place.x()), std::floor(place.y()));
    QPainter painter(&canvas);
    image.draw(painter, place);
    painter.end();
    return canvas;
}

const std::vector<QSize> largeSizes{{600, 600}, {601, 450}, {333, 800}, {5000, 300}, {140, 4000}, {129, 128}};

TEST_F(TodayWidgetLogicImagesTest, keepsTheSizeOfALargeGlyphButOnlyThePixelsThatShow) {
    for (const QSize size : largeSizes) {
        writeIcon(glyphName, plainPicture(size.width(), size.height(), red));
        const platform::Image image = TodayWidgetLogic::imageByName(glyphName, fortyByForty);
        EXPECT_EQ(image.size(), QSizeF(size));
        EXPECT_LE(image.pixels(1).sizeInBytes(), 40 * 40 * 4);
    }
}

TEST_F(TodayWidgetLogicImagesTest, showsALargeGlyphAsAllItsPixelsWould) {
    for (const QSize size : largeSizes) {
        const QImage glyph = shadedPicture(size.width(), size.height());
        writeIcon(glyphName, glyph);
        const platform::Difference difference =
            platform::differenceOf(shownInView(TodayWidgetLogic::imageByName(glyphName, fortyByForty)),
                                   shownInView(platform::Image(glyph).tinted(Qt::white)));
        EXPECT_LE(difference.most, 3) << size.width();
        EXPECT_LE(difference.mean, 0.6) << size.width();
    }
}

TEST_F(TodayWidgetLogicImagesTest, showsALargePictureAsAllItsPixelsWould) {
    for (const QSize size : largeSizes) {
        for (const QSizeF rect : {QSizeF(40, 40), QSizeF(38, 30), QSizeF(200, 200), QSizeF(33.5, 41)}) {
            const QImage picture = shadedPicture(size.width(), size.height());
            const QRectF drawing = circularDrawingRect(QSizeF(size), rect);
            const QImage whole = platform::ovalPicture(platform::Image(picture), drawing, rect, 1).pixels(1);
            const platform::Difference difference =
                platform::differenceOf(circular(picture, QRectF({}, rect)), whole);
            EXPECT_LE(difference.most, 3) << size.width() << " in " << rect.width();
            EXPECT_LE(difference.mean, 0.6) << size.width() << " in " << rect.width();
        }
    }
}

TEST_F(TodayWidgetLogicImagesTest, showsAWidePictureThatIsNotShrunkExactly) {
    const QImage picture = shadedPicture(800, 300);
    const QRectF drawing = circularDrawingRect({800, 300}, {40, 40});
    EXPECT_EQ(circular(picture, fortyByForty),
              platform::ovalPicture(platform::Image(picture), drawing, {40, 40}, 1).pixels(1));
}

TEST_F(TodayWidgetLogicImagesTest, takesLittleMemoryForManyLargeIcons) {
    const auto checks = [](int x, int y) { return ((x ^ y) & 64) != 0 ? red : clear; };
    const QByteArray png = platform::pngOf({3000, 3000}, platform::Interlace::None, checks);
    writeBytes(QStringLiteral("-/icons/%1.png").arg(glyphName), png);
    writeBytes(QStringLiteral("-/icons/%1.png").arg(pictureName), png);
    rusage before{}, after{};
    ::getrusage(RUSAGE_SELF, &before);
    std::vector<platform::Image> icons;
    for (int row = 0; row < 4; ++row)
        for (const QString& name : {glyphName, pictureName})
            icons.push_back(TodayWidgetLogic::imageByName(name, fortyByForty));
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 8 * 1024); // KiB; all pixels of one are 34 MiB
}

// --- deaths

constexpr const char* nothing = "^$";

TEST_F(TodayWidgetLogicImagesDeathTest, endsWithoutAContainerForAGlyph) {
    QDir(container()).removeRecursively();
    EXPECT_EXIT(TodayWidgetLogic::imageByName(glyphName, fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
}

TEST_F(TodayWidgetLogicImagesDeathTest, endsWithoutAContainerForAPicture) {
    QDir(container()).removeRecursively();
    EXPECT_EXIT(TodayWidgetLogic::imageByName(pictureName, fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
}

TEST_F(TodayWidgetLogicImagesDeathTest, endsForAGlyphThatIsMissing) {
    EXPECT_EXIT(TodayWidgetLogic::imageByName(glyphName, fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
    EXPECT_EXIT(TodayWidgetLogic::imageByName(QString(), fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
}

TEST_F(TodayWidgetLogicImagesDeathTest, endsForAGlyphThatIsNoImage) {
    writeBytes(QStringLiteral("-/icons/%1.png").arg(glyphName), "no image");
    EXPECT_EXIT(TodayWidgetLogic::imageByName(glyphName, fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
}

TEST_F(TodayWidgetLogicImagesDeathTest, endsSilentlyForAGlyphThatIsCutShort) {
    writeIcon(glyphName, mapPicture(40, 40));
    QFile file(made(QStringLiteral("-/icons/%1.png").arg(glyphName)));
    ASSERT_TRUE(file.resize(file.size() / 2));
    EXPECT_EXIT(TodayWidgetLogic::imageByName(glyphName, fortyByForty), testing::KilledBySignal(SIGABRT),
                nothing);
}

} // namespace
} // namespace exchange
