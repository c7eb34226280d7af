#pragma once

#include <QPainter>
#include <QRectF>
#include <QTransform>

#include <cmath>

namespace platform {

// A rectangle with its edges moved to the nearest ones between two pixels of the painter's device, as the
// toolkit rounds the area of a widget: what fills it has sharp edges at each scale. For painters that scale
// and move only.
[[nodiscard]] inline QRectF onDevicePixels(const QPainter& painter, const QRectF& rect) {
    const auto edge = [](double pixels) { return std::floor(pixels + 0.5); };
    const QTransform transform = painter.deviceTransform();
    const QRectF device = transform.mapRect(rect);
    const QPointF start(edge(device.left()), edge(device.top()));
    const QPointF end(edge(device.right()), edge(device.bottom()));
    return transform.inverted().mapRect(QRectF(start, end));
}

} // namespace platform
