#pragma once

#include "platform/views/View.h"

#include <QColor>

namespace platform {

// A filled rectangle. Inside a LayerView that masks to its bounds it is cut to that view's round corners.
class Box final : public View {
    Q_OBJECT
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor)

public:
    explicit Box(QWidget* parent = nullptr);

    [[nodiscard]] const QColor& fillColor() const { return fillColor_; }
    void setFillColor(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor fillColor_ = Qt::transparent;
};

} // namespace platform
