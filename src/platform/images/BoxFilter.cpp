#include "platform/images/BoxFilter.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

using Sum = std::array<quint64, 4>;

void add(Sum& sum, const Sum& other, quint64 weight) {
    for (std::size_t channel = 0; channel < sum.size(); ++channel)
        sum[channel] += other[channel] * weight;
}

// The sum of pixels from one to another, exclusive. A line has a million pixels at most, which is libpng's
// limit.
Sum sumOf(const QRgb* begin, const QRgb* end) {
    quint32 blue = 0, green = 0, red = 0, alpha = 0;
    for (const QRgb* pixel = begin; pixel < end; ++pixel) {
        blue += *pixel & 0xff;
        green += *pixel >> 8 & 0xff;
        red += *pixel >> 16 & 0xff;
        alpha += *pixel >> 24;
    }
    return {blue, green, red, alpha};
}

} // namespace

BoxFilter::Span::Span(qint64 index, qint64 count, qint64 others) {
    const qint64 begin = index * others, end = begin + others; // an own pixel is `others` units long
    first = begin / count;
    last = (end - 1) / count;
    ofFirst = static_cast<quint64>(std::min(end, (first + 1) * count) - begin);
    ofMiddle = static_cast<quint64>(count);
    ofLast = last > first ? static_cast<quint64>(end - last * count) : 0;
}

BoxFilter::BoxFilter(const QSize& picture, const KeptPixels& kept)
    : picture_(picture)
    , kept_(kept) {
    for (int column = kept.part.left(); column <= kept.part.right(); ++column)
        columns_.emplace_back(column, kept.scaled.width(), picture.width());
    across_.resize(columns_.size());
    sums_.resize(columns_.size() * static_cast<std::size_t>(kept.part.height()));
}

void BoxFilter::addLine(int y, const QRgb* line) {
    const Span rows(y, picture_.height(), kept_.scaled.height()); // one, or two in part
    bool isSummed = false;
    for (qint64 row = rows.first; row <= rows.last; ++row) {
        if (row < kept_.part.top() || row > kept_.part.bottom())
            continue;
        if (!std::exchange(isSummed, true))
            sumAcross(line);
        Sum* sums = sums_.data() + (row - kept_.part.top()) * kept_.part.width();
        for (const Sum& column : across_)
            add(*sums++, column, row == rows.first ? rows.ofFirst : rows.ofLast);
    }
}

void BoxFilter::sumAcross(const QRgb* line) {
    auto sum = across_.begin();
    for (const Span& column : columns_) {
        *sum = {};
        add(*sum, sumOf(line + column.first, line + column.first + 1), column.ofFirst);
        add(*sum, sumOf(line + column.first + 1, line + column.last), column.ofMiddle);
        add(*sum, sumOf(line + column.last, line + column.last + 1), column.ofLast);
        ++sum;
    }
}

QImage BoxFilter::pixels() const {
    QImage image(kept_.part.size(), QImage::Format_ARGB32_Premultiplied);
    const quint64 area = static_cast<quint64>(picture_.width()) * static_cast<quint64>(picture_.height());
    const auto mean = [area](quint64 sum) { return static_cast<int>((sum + area / 2) / area); };
    const Sum* sums = sums_.data();
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x, ++sums)
            line[x] = qRgba(mean((*sums)[2]), mean((*sums)[1]), mean((*sums)[0]), mean((*sums)[3]));
    }
    return image;
}

} // namespace platform
