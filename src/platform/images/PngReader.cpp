#include "platform/images/PngReader.h"

#include "platform/images/BoxFilter.h"

#include <QIODevice>
#include <QImageReader>

#include <csetjmp>
#include <optional>
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
    FilePixels result;
    // Unless all pixels are kept, a line is read and then added to the filter.
    std::optional<BoxFilter> filter;
    QImage line;
};

bool prepare(Reading& reading, const QSize& picture, const PixelChoice& choose) {
    reading.result.picture = picture;
    reading.result.kept = choose(picture);
    if (reading.result.kept == allPixels(picture)) {
        reading.result.pixels = QImage(picture, QImage::Format_ARGB32);
        return !reading.result.pixels.isNull();
    }
    reading.filter.emplace(picture, reading.result.kept);
    reading.line = QImage(picture.width(), 1, QImage::Format_ARGB32);
    return !reading.line.isNull();
}

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

void readLine(Reading& reading, int y) {
    if (!reading.filter) {
        png_read_row(reading.png, reading.result.pixels.scanLine(y), nullptr);
        return;
    }
    reading.line.reinterpretAsFormat(QImage::Format_ARGB32);
    reading.line.fill(0U); // libpng writes the pixels of one pass only
    png_read_row(reading.png, reading.line.bits(), nullptr);
    reading.line.convertTo(QImage::Format_ARGB32_Premultiplied); // in place
    reading.filter->addLine(y, reinterpret_cast<const QRgb*>(reading.line.constBits()));
}

// The function that libpng jumps back to on an error. False on any.
bool readImage(Reading& reading, const PixelChoice& choose) {
    png_structp png = reading.png;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(cert-err52-cpp): libpng's way of failing
        return false;
    png_set_read_fn(png, &reading.device, readBytes);
    // Chunks that say nothing of the samples are skipped: compressed ones could expand to gigabytes.
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(png, reading.info);
    const png_uint_32 width = png_get_image_width(png, reading.info);
    const png_uint_32 height = png_get_image_height(png, reading.info);
    if (!isWithinLimit(width, height))
        return false;
    convertToQRgb(png);
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, reading.info);
    const QSize picture(static_cast<int>(width), static_cast<int>(height));
    if (!prepare(reading, picture, choose))
        return false;
    for (int pass = 0; pass < passes; ++pass)
        for (int y = 0; y < picture.height(); ++y)
            readLine(reading, y);
    png_read_end(png, nullptr);
    return true;
}

} // namespace

bool beginsLikePng(QIODevice& device) {
    const QByteArray start = device.peek(signatureLength);
    return start.size() == signatureLength &&
           png_sig_cmp(reinterpret_cast<png_const_bytep>(start.constData()), 0, signatureLength) == 0;
}

FilePixels readPng(QIODevice& device, const PixelChoice& choose) {
    Reading reading(device);
    reading.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning);
    if (!reading.png)
        return {};
    reading.info = png_create_info_struct(reading.png);
    if (!reading.info || !readImage(reading, choose))
        return {};
    if (reading.filter)
        reading.result.pixels = reading.filter->pixels();
    return std::move(reading.result);
}

} // namespace platform
