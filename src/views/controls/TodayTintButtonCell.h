#pragma once

#include "platform/views/ButtonCell.h"

// Draws the image of a button in one colour and its title at fixed offsets from the leading edge, and makes
// the button half transparent while it is pressed. Drawing is fatal for a button without a superview where
// the layout direction matters.
class TodayTintButtonCell final : public platform::ButtonCell {
public:
    QColor tintColor = Qt::white;
    double titleXOffset = 0;  // points from the leading edge
    double titleYOffset = 0;  // points from the top
    bool imageCenterX = true; // otherwise the image is at the leading edge

    void highlight(bool flag, const QRectF& rect, platform::Button& view) override;
    void drawImage(QPainter& painter, const platform::Image& image, const QRectF& rect,
                   platform::Button& view) override;
    QRectF drawTitle(QPainter& painter, const platform::AttributedString& title, const QRectF& rect,
                     platform::Button& view) override;

    // The rectangles of drawImage and drawTitle in the button's coordinates.
    [[nodiscard]] QRectF imageRect(QSizeF imageSize, const platform::Button& view) const;
    [[nodiscard]] QRectF titleRect(const QRectF& rect, const platform::Button& view) const;

private:
    [[nodiscard]] platform::Image tintedImage(const platform::Image& image) const;
};
