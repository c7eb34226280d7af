#include "platform/views/Box.h"

#include "platform/views/DevicePixels.h"
#include "platform/views/LayerView.h"

#include <QPainter>

namespace platform {

Box::Box(QWidget* parent)
    : View(parent) {}

void Box::setFillColor(const QColor& color) {
    if (fillColor_ == color)
        return;
    fillColor_ = color;
    update();
}

void Box::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto* holder = qobject_cast<LayerView*>(superview());
    if (!holder || !holder->masksToBounds()) {
        painter.fillRect(rect(), fillColor_);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fillColor_);
    const QRectF mask = QRectF(holder->rect()).translated(-QPointF(pos()));
    painter.drawRoundedRect(onDevicePixels(painter, mask), holder->cornerRadius(), holder->cornerRadius());
}

} // namespace platform
