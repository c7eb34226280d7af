#pragma once

#include <QFont>
#include <QString>
#include <QTextLayout>

class QPainter;

namespace panel {

// A text that wraps at a width in points and begins each line at the leading edge; a word that is wider is
// broken. Immutable.
class Paragraph final {
public:
    Paragraph(const QString& text, const QFont& font, double width, Qt::LayoutDirection direction);

    // In points; a text without characters takes none.
    [[nodiscard]] double height() const { return height_; }

    // Draws it with the painter's pen.
    void draw(QPainter& painter, QPointF topLeft) const;

private:
    QTextLayout layout_;
    double height_ = 0;
};

} // namespace panel
