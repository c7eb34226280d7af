#include "panel/Stack.h"

namespace panel {

void Stack::layoutViews() {
    View::layoutViews();
    const double width = bounds().width();
    double y = 0;
    for (View* view : subviews()) {
        if (view->isHidden())
            continue;
        const double height = view->heightForWidth(static_cast<int>(width));
        view->setFrame(QRectF(0, y, width, height));
        y += height;
    }
    if (heightChanged_)
        heightChanged_(y);
}

} // namespace panel
