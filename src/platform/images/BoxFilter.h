#pragma once

#include "platform/images/KeptPixels.h"

#include <QImage>

#include <array>
#include <vector>

namespace platform {

// Shrinks a picture line by line: each pixel of the result is the mean of the area of the picture that it
// covers. Lines come in any order, and a line may come several times with some of its pixels, as those of
// interlaced files do. Holds 32 bytes for each pixel of the result and of one of its lines.
class BoxFilter final {
public:
    BoxFilter(const QSize& picture, const KeptPixels& kept);

    // Adds the pixels of a line, premultiplied and as many as the picture is wide. Clear ones add nothing.
    void addLine(int y, const QRgb* line);

    // The part that is kept, premultiplied, once each pixel of the picture has been added.
    [[nodiscard]] QImage pixels() const;

private:
    // Blue, green, red and alpha, each weighted by the area that a pixel covers.
    using Sum = std::array<quint64, 4>;

    // Which pixels of one side of a grid a pixel of another grid covers, and how much of each. Lengths are
    // counted in units that make the pixels of both grids whole numbers of units long: a pixel is as many
    // units long as the other grid has pixels.
    struct Span {
        // The pixel number `index` of a side of `count` pixels, over a side of `others` pixels.
        Span(qint64 index, qint64 count, qint64 others);

        qint64 first, last;
        quint64 ofFirst, ofMiddle, ofLast;
    };

    void sumAcross(const QRgb* line);

    QSize picture_;
    KeptPixels kept_;
    std::vector<Span> columns_; // of the part
    std::vector<Sum> across_;   // of one line, for each column
    std::vector<Sum> sums_;     // for each pixel of the part
};

} // namespace platform
