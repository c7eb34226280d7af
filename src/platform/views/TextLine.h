#pragma once

#include <QRectF>
#include <QTextLayout>

#include <memory>

class QPainter;

namespace platform {

// One line of text in a font, shaped once and drawn as often as is wanted. Line breaks and tabs are spaces.
// Immutable. Main thread only.
class TextLine final {
public:
    TextLine(const QString& text, const QFont& font);

    // The line of a text in a font. Short ones are kept for a while, because the same text is measured for
    // the layout and drawn frame after frame.
    [[nodiscard]] static std::shared_ptr<const TextLine> of(const QString& text, const QFont& font);

    // What the text takes in points, spaces at its end included, whatever its length.
    [[nodiscard]] double width() const { return width_; }

    // Draws it with the painter's pen into a rectangle (points), upright in its middle and aligned to its
    // left edge, right edge or middle. It is not cut where it is wider.
    void draw(QPainter& painter, const QRectF& rect, Qt::Alignment side) const;

private:
    QTextLayout layout_;
    double scale_;
    double width_;
};

// The width in points that a text takes on one line, whatever its length; line breaks count as spaces.
[[nodiscard]] double textWidth(const QString& text, const QFont& font);

// A text as one line shows it: line breaks and tabs are spaces.
[[nodiscard]] QString singleLine(const QString& text);

} // namespace platform
