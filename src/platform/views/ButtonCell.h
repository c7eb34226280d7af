#pragma once

#include "platform/images/Image.h"

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace platform {

class Button;

// A text that brings its own look.
struct AttributedString {
    QString text;
    QFont font;
    QColor foregroundColor = Qt::white;
    Qt::Alignment alignment = Qt::AlignLeading; // Qt::AlignLeading is the natural alignment

    [[nodiscard]] bool isEmpty() const { return text.isEmpty(); }

    // Draws it on one line from the rectangle's top, aligned for a direction of reading, elided at the tail.
    void draw(QPainter& painter, const QRectF& rect, Qt::LayoutDirection direction) const;
};

// How a button draws itself. A button calls these three operations with itself as the view; rectangles are in
// its own coordinates. This is the standard cell: image and title in the middle, dimmed while pressed.
class ButtonCell {
public:
    virtual ~ButtonCell() = default;

    virtual void highlight(bool flag, const QRectF& rect, Button& view);
    virtual void drawImage(QPainter& painter, const Image& image, const QRectF& rect, Button& view);
    // Returns the rectangle that it was given.
    virtual QRectF drawTitle(QPainter& painter, const AttributedString& title, const QRectF& rect,
                             Button& view);
};

} // namespace platform
