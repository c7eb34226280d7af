#pragma once

#include <QRectF>
#include <QTextLayout>

class QPainter;

namespace platform {

// One line of text, shaped in a font. Line breaks and tabs become spaces. Immutable. Main thread only.
class TextLine final {
public:
    TextLine(const QString& text, const QFont& font);

    // In points, spaces at the end included.
    [[nodiscard]] double width() const { return width_; }

    // Draws it with the painter's pen into a rectangle (points), in the middle of its height and aligned to
    // its left edge, right edge or middle. A line that is wider is not clipped.
    void draw(QPainter& painter, const QRectF& rect, Qt::Alignment side) const;

private:
    friend class TextLineTestAccess;

    QTextLayout layout_;
    double scale_;
    double width_;
};

// The width in points that a text takes on one line; line breaks count as spaces.
[[nodiscard]] double textWidth(const QString& text, const QFont& font);

// A text as one line shows it: line breaks and tabs are spaces.
[[nodiscard]] QString singleLine(const QString& text);

} // namespace platform
