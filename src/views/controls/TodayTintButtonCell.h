#pragma once

#include "platform/views/ButtonCell.h"

// Draws its button's image in one flat colour and its title at fixed offsets, both kept to the leading edge
// of the button's superview, and dims the whole button while it is pressed. Drawing that needs a direction of
// reading is fatal for a button without a superview.
class TodayTintButtonCell final : public platform::ButtonCell {
public:
    QColor tintColor = Qt::white;
    double titleXOffset =
        0; // points from the left; in right-to-left layouts the space kept free at the right
    double titleYOffset = 0;  // points from the top
    bool imageCenterX = true; // otherwise the image stands at the leading edge

    void highlight(bool flag, const QRectF& rect, platform::Button& view) override;
    void drawImage(QPainter& painter, const platform::Image& image, const QRectF& rect,
                   platform::Button& view) override;
    QRectF drawTitle(QPainter& painter, const platform::AttributedString& title, const QRectF& rect,
                     platform::Button& view) override;

    // Where drawImage and drawTitle draw, in the button's coordinates.
    [[nodiscard]] QRectF imageRect(QSizeF imageSize, const platform::Button& view) const;
    [[nodiscard]] QRectF titleRect(const QRectF& rect, const platform::Button& view) const;

private:
    [[nodiscard]] platform::Image tintedImage(const platform::Image& image) const;
};
