#include "ctl/check/PngFile.h"

#include "platform/system/NumberText.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <png.h>
#include <vector>

namespace ctl {

namespace {

constexpr std::size_t signatureLength = 8;

// The first bytes of files of the other formats that are likely.
constexpr std::array<std::string_view, 14> otherStarts = {
    "\xFF\xD8\xFF", "GIF87a", "GIF89a", "BM", std::string_view("\0\0\1\0", 4), "P1", "P2", "P3", "P4", "P5",
    "P6",           "/* XPM", "II*",    "MM"};

// In mebibytes: four bytes a pixel of a picture may take so many. 0 is no limit.
std::uint64_t imageLimit() {
    const char* text = std::getenv("QT_IMAGEIO_MAXALLOC");
    const auto chosen = text ? platform::numberFromText<int>(text) : std::nullopt;
    return static_cast<std::uint64_t>(std::max(chosen.value_or(KORVEL_IMAGE_LIMIT), 0));
}

// What one call of pngState owns. libpng reports errors by longjmp, which runs no destructors, so no object
// that has one lives in the function that libpng leaves that way.
struct Reading {
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }

    std::string_view rest;
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::vector<png_byte> row;
    std::uint64_t limit = imageLimit();
};

[[noreturn]] void jumpBack(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void readBytes(png_structp png, png_bytep bytes, size_t length) {
    auto* reading = static_cast<Reading*>(png_get_io_ptr(png));
    if (reading->rest.size() < length)
        png_error(png, "cut short");
    std::memcpy(bytes, reading->rest.data(), length);
    reading->rest.remove_prefix(length);
}

bool isWithinLimit(const Reading& reading, png_uint_32 width, png_uint_32 height) {
    return reading.limit == 0 || std::uint64_t{width} * height * 4 <= reading.limit * 1024 * 1024;
}

PngState readRows(Reading& reading) {
    png_structp png = reading.png;
    if (setjmp(png_jmpbuf(png)) != 0) // NOLINT(cert-err52-cpp): libpng's way of failing
        return PngState::Broken;
    png_set_read_fn(png, &reading, readBytes);
    png_read_info(png, reading.info);
    const png_uint_32 width = png_get_image_width(png, reading.info);
    const png_uint_32 height = png_get_image_height(png, reading.info);
    if (!isWithinLimit(reading, width, height))
        return PngState::TooLarge;
    const int passes = png_set_interlace_handling(png);
    png_read_update_info(png, reading.info);
    reading.row.resize(png_get_rowbytes(png, reading.info));
    for (int pass = 0; pass < passes; ++pass)
        for (png_uint_32 y = 0; y < height; ++y)
            png_read_row(png, reading.row.data(), nullptr);
    png_read_end(png, nullptr);
    return PngState::Whole;
}

bool isOtherFormat(std::string_view bytes) {
    const bool isWebp = bytes.starts_with("RIFF") && bytes.substr(0, 12).ends_with("WEBP");
    return isWebp || std::any_of(otherStarts.begin(), otherStarts.end(),
                                 [&](std::string_view start) { return bytes.starts_with(start); });
}

} // namespace

PngState pngState(std::string_view bytes) {
    if (bytes.size() < signatureLength ||
        png_sig_cmp(reinterpret_cast<png_const_bytep>(bytes.data()), 0, signatureLength) != 0)
        return isOtherFormat(bytes) ? PngState::OtherFormat : PngState::NoPicture;
    Reading reading;
    reading.rest = bytes;
    reading.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, jumpBack, ignoreWarning);
    if (!reading.png)
        return PngState::Broken;
    reading.info = png_create_info_struct(reading.png);
    return reading.info ? readRows(reading) : PngState::Broken;
}

} // namespace ctl
