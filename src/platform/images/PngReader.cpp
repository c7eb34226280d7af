#include "platform/images/PngReader.h"

#include <QIODevice>
#include <QImageReader>

#include <csetjmp>
#include <png.h>

namespace platform {

namespace {

constexpr qsizetype signatureLength = 8;

// What one call of readPng owns. libpng reports errors by longjmp, which runs no destructors, so no object
// that has one lives in the functions that libpng leaves that way.
struct Reading {
    explicit Reading(QIODevice& source)
        : device(source) {}
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    QIODevice& device;
    png_structp png = nullptr;
    png_infop info = nullptr;
    QImage image;
};

[[noreturn]] void jumpBack(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep bytes, size_t length) {
    auto* device = static_cast<QIODevice*>(png_get_io_ptr(png));
    const auto wanted = static_cast<qint64>(length);
    if (device->read(reinterpret_cast<char*>(bytes), wanted) != wanted)
        png_error(png, "cut short");
}

bool isWithinLimit(png_uint_32 width, png_uint_32 height) {
    const auto mebibytes = static_cast<quint64>(QImageReader::allocationLimit()); // 0 is no limit
    return mebibytes == 0 || quint64{width} * height * 4 <= mebibytes * 1024 * 1024;
}

// Has libpng convert every kind of samples to four bytes a pixel in QRgb's order.
void convertToQRgb(png_structp png) {
    png_set_expand(png);
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
        png_set_bgr(png);
        png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    } else {
        png_set_swap_alpha(png);
        png_set_add_alpha(png, 0xff, PNG_FILLER_BEFORE);
    }
}

// The function that libpng jumps back to on an error. False on any.
bool readImage(Reading& reading) {
    png_structp png = reading.png;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(cert-err52-cpp): libpng's way of failing
        return false;
    png_set_read_fn(png, &reading.device, readBytes);
    png_read_info(png, reading.info);
    const png_uint_32 width = png_get_image_width(png, reading.info);
    const png_uint_32 height = png_get_image_height(png, reading.info);
    if (!isWithinLimit(width, height))
        return false;
    convertToQRgb(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, reading.info);
    reading.image = QImage(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32);
    if (reading.image.isNull())
        return false;
    uchar* bits = reading.image.bits();
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < height; ++y)
            png_read_row(png, bits + qsizetype{4} * width * y, nullptr);
    png_read_end(png, nullptr);
    return true;
}

} // namespace

bool beginsLikePng(QIODevice& device) {
    const QByteArray start = device.peek(signatureLength);
    return start.size() == signatureLength &&
           png_sig_cmp(reinterpret_cast<png_const_bytep>(start.constData()), 0, signatureLength) == 0;
}

QImage readPng(QIODevice& device) {
    Reading reading(device);
    reading.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning);
    if (!reading.png)
        return {};
    reading.info = png_create_info_struct(reading.png);
    if (!reading.info || !readImage(reading))
        return {};
    return std::move(reading.image);
}

} // namespace platform
