#pragma once

#include <QByteArray>
#include <QRgb>
#include <QSize>

#include <png.h>

#include <cstdlib>
#include <functional>
#include <vector>

namespace platform {

enum class Interlace { None, Adam7 };

// A PNG of four bytes a pixel whose pixels (not premultiplied) are asked for one by one, so that a large one
// takes no memory while it is written.
[[nodiscard]] inline QByteArray pngOf(const QSize& size, Interlace interlace,
                                      const std::function<QRgb(int x, int y)>& pixelAt) {
    const auto fail = [](png_structp, png_const_charp) { std::abort(); };
    const auto append = [](png_structp png, png_bytep bytes, size_t length) {
        static_cast<QByteArray*>(png_get_io_ptr(png))
            ->append(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(length));
    };
    QByteArray file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, append, nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(size.width()), static_cast<png_uint_32>(size.height()),
                 8, PNG_COLOR_TYPE_RGBA,
                 interlace == Interlace::Adam7 ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 1);
    png_write_info(png, info);
    const int passes = png_set_interlace_handling(png);
    std::vector<png_byte> line(static_cast<std::size_t>(size.width()) * 4);
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < size.height(); ++y) {
            png_byte* byte = line.data();
            for (int x = 0; x < size.width(); ++x) {
                const QRgb pixel = pixelAt(x, y);
                for (const int sample : {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)})
                    *byte++ = static_cast<png_byte>(sample);
            }
            png_write_row(png, line.data());
        }
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

} // namespace platform
