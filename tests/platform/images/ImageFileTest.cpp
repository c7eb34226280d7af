#include "platform/images/ImageFile.h"

#include "platform/images/Pictures.h"
#include "platform/images/PngWriter.h"

#include <QBuffer>
#include <QByteArray>
#include <QColorSpace>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <array>
#include <sys/resource.h>
#include <sys/stat.h>

namespace platform {
namespace {

QByteArray encoded(const QImage& picture, const char* format = "PNG") {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

// The checksum of PNG chunks (ISO 3309).
quint32 checksum(const QByteArray& bytes) {
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum & 1 ? 0xedb88320 ^ (sum >> 1) : sum >> 1;
    }
    return ~sum;
}

QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

// A PNG that says it has another size.
QByteArray claimingSize(QByteArray png, quint32 width, quint32 height) {
    png.replace(16, 8, bigEndian(width) + bigEndian(height));
    png.replace(29, 4, bigEndian(checksum(png.mid(12, 17))));
    return png;
}

// A PNG with one chunk more, before its pixels.
QByteArray withChunk(QByteArray png, const QByteArray& type, const QByteArray& data) {
    const auto size = static_cast<quint32>(data.size());
    return png.insert(33, bigEndian(size) + type + data + bigEndian(checksum(type + data)));
}

class ImageFileTest : public testing::Test {
protected:
    std::string path(const char* name) const {
        return folder.filePath(QString::fromUtf8(name)).toStdString();
    }

    Image load(const QByteArray& bytes, const char* name = "icon.png",
               const PixelChoice& choose = allPixels) const {
        QFile file(folder.filePath(QString::fromUtf8(name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            ADD_FAILURE() << "cannot write " << name;
        file.close();
        return imageWithContentsOfFile(path(name), choose);
    }

    // How much the process's peak memory grows by loading a file, in MiB.
    long growthByLoading(const QByteArray& bytes, const PixelChoice& choose) const {
        rusage before{}, after{};
        ::getrusage(RUSAGE_SELF, &before);
        EXPECT_FALSE(load(bytes, "icon.png", choose).isNull());
        ::getrusage(RUSAGE_SELF, &after);
        return (after.ru_maxrss - before.ru_maxrss) / 1024;
    }

    QTemporaryDir folder;
};

TEST_F(ImageFileTest, takesAPixelForAPoint) {
    const Image image = load(encoded(plainPicture(48, 32, red)));
    EXPECT_EQ(image.size(), QSizeF(48, 32));
    EXPECT_EQ(image.pixels(1), plainPicture(48, 32, red));
}

TEST_F(ImageFileTest, ignoresTheDensityThatTheFileStates) {
    QImage picture = plainPicture(48, 32, red);
    picture.setDotsPerMeterX(5669);
    picture.setDotsPerMeterY(5669);
    EXPECT_EQ(load(encoded(picture)).size(), QSizeF(48, 32));
}

TEST_F(ImageFileTest, ignoresTheDensityThatTheNameStates) {
    EXPECT_EQ(load(encoded(plainPicture(48, 32, red)), "icon@2x.png").size(), QSizeF(48, 32));
}

TEST_F(ImageFileTest, takesThePlainFileThoughADenserOneStandsBesideIt) {
    load(encoded(plainPicture(96, 64, blue)), "icon@2x.png");
    EXPECT_EQ(load(encoded(plainPicture(48, 32, red))).pixels(1), plainPicture(48, 32, red));
}

TEST_F(ImageFileTest, keepsTransparency) {
    QImage picture(2, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(255, 0, 0, 128));
    picture.setPixel(1, 0, qRgba(0, 255, 0, 0));
    const QImage pixels = load(encoded(picture)).pixels(1);
    EXPECT_EQ(reinterpret_cast<const QRgb*>(pixels.constScanLine(0))[0], qRgba(128, 0, 0, 128));
    EXPECT_EQ(reinterpret_cast<const QRgb*>(pixels.constScanLine(0))[1], clear);
}

TEST_F(ImageFileTest, readsEachKindOfPixels) {
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                              QImage::Format_RGB888, QImage::Format_RGBA64}) {
        QImage picture = plainPicture(8, 8, 0xffffffff).convertToFormat(format);
        EXPECT_EQ(load(encoded(picture)).pixels(1), plainPicture(8, 8, 0xffffffff)) << format;
    }
}

TEST_F(ImageFileTest, appliesNoGamma) {
    const QByteArray png = encoded(plainPicture(4, 4, qRgb(90, 120, 30)));
    for (const quint32 gamma : {45455U, 100000U, 220000U}) {
        const Image image = load(withChunk(png, "gAMA", bigEndian(gamma)));
        EXPECT_EQ(image.pixels(1).pixel(1, 1), qRgb(90, 120, 30)) << gamma;
    }
}

TEST_F(ImageFileTest, appliesNoColourProfile) {
    QImage picture = plainPicture(4, 4, qRgb(90, 120, 30));
    picture.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    EXPECT_EQ(load(encoded(picture)).pixels(1).pixel(1, 1), qRgb(90, 120, 30));
}

TEST_F(ImageFileTest, letsTheContentDecideTheFormat) {
    const Image jpeg = load(encoded(plainPicture(16, 8, red), "JPG"), "icon.png");
    EXPECT_EQ(jpeg.size(), QSizeF(16, 8));
    EXPECT_TRUE(isNear(jpeg.pixels(1).pixel(8, 4), red, 8));
    EXPECT_EQ(load(encoded(plainPicture(16, 8, red), "BMP"), "icon.png").size(), QSizeF(16, 8));
}

TEST_F(ImageFileTest, isNullForADrawing) {
    const QByteArray drawing(R"(<svg xmlns="http://www.w3.org/2000/svg" width="9" height="9">)"
                             R"(<rect width="9" height="9"/></svg>)");
    EXPECT_TRUE(load(drawing, "icon.png").isNull());
    EXPECT_TRUE(load(drawing, "icon.svg").isNull());
}

TEST_F(ImageFileTest, isNullForAMissingFile) {
    EXPECT_TRUE(imageWithContentsOfFile(path("missing.png")).isNull());
    EXPECT_TRUE(imageWithContentsOfFile("").isNull());
}

TEST_F(ImageFileTest, isNullForAPathWithANulByte) {
    load(encoded(plainPicture(4, 4, red)), "icon");
    EXPECT_TRUE(imageWithContentsOfFile(path("icon") + std::string("\0.png", 5)).isNull());
}

TEST_F(ImageFileTest, isNullForAFolder) {
    EXPECT_TRUE(imageWithContentsOfFile(path("")).isNull());
}

TEST_F(ImageFileTest, isNullForAFifoWithoutWaiting) {
    ASSERT_EQ(::mkfifo(path("fifo.png").c_str(), 0600), 0);
    EXPECT_TRUE(imageWithContentsOfFile(path("fifo.png")).isNull());
}

TEST_F(ImageFileTest, isNullForADevice) {
    EXPECT_TRUE(imageWithContentsOfFile("/dev/zero").isNull());
}

TEST_F(ImageFileTest, isNullForWhatIsNoImage) {
    EXPECT_TRUE(load(QByteArray()).isNull());
    EXPECT_TRUE(load(QByteArray("hello")).isNull());
    EXPECT_TRUE(load(QByteArray(10000, '\0')).isNull());
    EXPECT_TRUE(load(QByteArray("\x89PNG\r\n\x1a\n", 8)).isNull());
}

TEST_F(ImageFileTest, isNullForAPictureCutShortAnywhere) {
    const QByteArray png = encoded(plainPicture(4, 4, qRgb(90, 120, 30)));
    const qsizetype end = png.indexOf("IEND") - 4;
    for (qsizetype length = 0; length < end - 4; ++length) // the last four bytes are the pixels' checksum
        ASSERT_TRUE(load(png.left(length)).isNull()) << length;
}

TEST_F(ImageFileTest, isNullForAPictureOfNoSize) {
    EXPECT_TRUE(load(claimingSize(encoded(plainPicture(4, 4, red)), 0, 4)).isNull());
    EXPECT_TRUE(load(claimingSize(encoded(plainPicture(4, 4, red)), 4, 0)).isNull());
}

TEST_F(ImageFileTest, isNullBeyondTheImageLimitAndTakesNoMemoryForIt) {
    rusage before{}, after{};
    ::getrusage(RUSAGE_SELF, &before);
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_Mono, QImage::Format_Grayscale8}) {
        const QByteArray png = encoded(plainPicture(4, 4, red).convertToFormat(format));
        EXPECT_TRUE(load(claimingSize(png, 20000, 20000)).isNull()) << format;
    }
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 16 * 1024); // KiB
}

// --- a part of the pixels

PixelChoice shrunkTo(int width, int height) {
    return [=](const QSize&) { return allPixels(QSize(width, height)); };
}

// Grain under soft edges, not premultiplied.
QRgb grain(int x, int y) {
    return qRgba(x * 7 % 256, y * 5 % 256, (x ^ y) % 256, (x / 9 + y / 5) % 3 * 127);
}

QImage grainy(const QSize& size) {
    QImage picture(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, grain(x, y));
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

constexpr std::array bothInterlaces{Interlace::None, Interlace::Adam7};

TEST_F(ImageFileTest, keepsTheSizeOfAPictureThatItShrinks) {
    for (const char* format : {"PNG", "BMP"}) {
        const Image image = load(encoded(plainPicture(600, 300, red), format), "icon.png", shrunkTo(40, 20));
        EXPECT_EQ(image.size(), QSizeF(600, 300)) << format;
        EXPECT_EQ(image.part(), QRectF(0, 0, 600, 300)) << format;
        EXPECT_EQ(image.pixels(1), plainPicture(40, 20, red)) << format;
        EXPECT_EQ(image.tinted(Qt::blue).size(), QSizeF(600, 300)) << format;
        EXPECT_EQ(image.tinted(Qt::blue).pixels(1), plainPicture(40, 20, blue)) << format;
    }
}

TEST_F(ImageFileTest, keepsAWholePictureAsItIs) {
    for (const Interlace interlace : bothInterlaces)
        EXPECT_EQ(load(pngOf({150, 130}, interlace, grain)).pixels(1), grainy({150, 130}));
}

TEST_F(ImageFileTest, looksAsTheWholePictureShrunk) {
    const QImage wanted = grainy({413, 301}).scaled(76, 55, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (const Interlace interlace : bothInterlaces) {
        const Image image = load(pngOf({413, 301}, interlace, grain), "icon.png", shrunkTo(76, 55));
        const Difference difference = differenceOf(image.pixels(1), wanted);
        EXPECT_LE(difference.most, 3);
        EXPECT_LE(difference.mean, 0.6);
    }
}

TEST_F(ImageFileTest, shrinksAnInterlacedPictureToTheSamePixels) {
    for (const QSize size :
         {QSize(301, 277), QSize(16400, 1), QSize(1, 16400), QSize(5, 4001), QSize(4001, 3)}) {
        const auto halved = [](const QSize& picture) {
            return allPixels((picture / 2).expandedTo(QSize(1, 1)));
        };
        EXPECT_EQ(load(pngOf(size, Interlace::Adam7, grain), "icon.png", halved).pixels(1),
                  load(pngOf(size, Interlace::None, grain), "icon.png", halved).pixels(1))
            << size.width();
    }
}

TEST_F(ImageFileTest, keepsAPartWithItsPlace) {
    const auto middle = [](const QSize& picture) { return KeptPixels{picture, QRect(100, 50, 40, 38)}; };
    for (const QByteArray& bytes :
         {pngOf({300, 200}, Interlace::None, grain), pngOf({300, 200}, Interlace::Adam7, grain),
          encoded(grainy({300, 200}).convertToFormat(QImage::Format_RGB32), "BMP")}) {
        const Image image = load(bytes, "icon.png", middle);
        EXPECT_EQ(image.size(), QSizeF(300, 200));
        EXPECT_EQ(image.part(), QRectF(100, 50, 40, 38));
        EXPECT_EQ(image.pixels(1), load(bytes).pixels(1).copy(100, 50, 40, 38));
    }
    const auto shrunk = [](const QSize&) { return KeptPixels{QSize(150, 100), QRect(50, 25, 40, 38)}; };
    EXPECT_EQ(load(pngOf({300, 200}, Interlace::None, grain), "icon.png", shrunk).part(),
              QRectF(100, 50, 80, 76));
}

TEST_F(ImageFileTest, shrinksEachKindOfPixels) {
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                              QImage::Format_RGB888, QImage::Format_RGBA64}) {
        const QImage picture = plainPicture(200, 200, 0xffffffff).convertToFormat(format);
        EXPECT_EQ(load(encoded(picture), "icon.png", shrunkTo(8, 8)).pixels(1),
                  plainPicture(8, 8, 0xffffffff))
            << format;
    }
}

TEST_F(ImageFileTest, takesNoMemoryForThePixelsThatAreNotKept) {
    const auto ring = [](int x, int y) {
        const int square = (x - 2000) * (x - 2000) + (y - 2000) * (y - 2000);
        return square > 1000000 && square < 2000000 ? 0xff000000U : 0U;
    };
    for (const Interlace interlace : bothInterlaces) {
        const QByteArray png = pngOf({4000, 4000}, interlace, ring);
        EXPECT_LT(growthByLoading(png, shrunkTo(38, 38)), 8);
        const auto middle = [](const QSize& picture) {
            return KeptPixels{picture, QRect(2000, 2000, 42, 42)};
        };
        EXPECT_LT(growthByLoading(png, middle), 8);
    }
}

TEST_F(ImageFileTest, takesNoMemoryForTexts) {
    QByteArray png = encoded(plainPicture(4, 4, red));
    const QByteArray text = QByteArray("Comment\0\0", 9) + qCompress(QByteArray(7000000, ' ')).mid(4);
    for (int i = 0; i < 10; ++i)
        png = withChunk(png, "zTXt", text);
    EXPECT_LT(growthByLoading(png, allPixels), 8);
}

TEST_F(ImageFileTest, isNullForALargePictureCutShortAnywhere) {
    for (const Interlace interlace : bothInterlaces) {
        const QByteArray png = pngOf({200, 200}, interlace, [](int x, int y) { return x < y ? red : blue; });
        const qsizetype end = png.indexOf("IEND") - 4;
        for (qsizetype length = 0; length < end - 4; length += 3)
            ASSERT_TRUE(load(png.left(length), "icon.png", shrunkTo(8, 8)).isNull()) << length;
    }
    const QByteArray bitmap = encoded(plainPicture(200, 200, red), "BMP");
    EXPECT_TRUE(load(bitmap.left(40), "icon.png", shrunkTo(8, 8)).isNull());
}

TEST_F(ImageFileTest, isNullBeyondTheImageLimitThoughFewPixelsAreKept) {
    const QByteArray png = encoded(plainPicture(200, 200, red));
    EXPECT_TRUE(load(claimingSize(png, 20000, 20000), "icon.png", shrunkTo(8, 8)).isNull());
}

TEST_F(ImageFileTest, saysNothingOfABrokenPicture) {
    const QByteArray png = encoded(plainPicture(40, 40, qRgb(90, 120, 30)));
    testing::internal::CaptureStderr();
    load(png.left(png.size() / 2));
    load(png.left(20));
    load(claimingSize(png, 20000, 20000));
    load(encoded(plainPicture(40, 40, red), "JPG").left(300));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageFileTest, leavesTheMessageHandlerAsItWas) {
    static int messages = 0;
    messages = 0;
    const auto before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++messages; });
    load(QByteArray("\x89PNG\r\n\x1a\n", 8));
    qWarning("after");
    qInstallMessageHandler(before);
    EXPECT_EQ(messages, 1);
}

TEST_F(ImageFileTest, readsAgainWhatHasChanged) {
    load(encoded(plainPicture(4, 4, red)));
    EXPECT_EQ(load(encoded(plainPicture(4, 4, blue))).pixels(1), plainPicture(4, 4, blue));
}

} // namespace
} // namespace platform
