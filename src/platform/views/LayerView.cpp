#include "platform/views/LayerView.h"

namespace platform {

LayerView::LayerView(QWidget* parent)
    : View(parent) {}

void LayerView::setMasksToBounds(bool masks) {
    masksToBounds_ = masks;
    update();
}

void LayerView::setCornerRadius(double radius) {
    cornerRadius_ = radius;
    update();
}

} // namespace platform
