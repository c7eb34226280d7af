#pragma once

#include "platform/views/View.h"

#include <functional>

namespace panel {

// Has its subviews below each other, from the back to the front, each as wide as the stack and as high as its
// heightForWidth says. Hidden ones take no place.
class Stack final : public platform::View {
    Q_OBJECT

public:
    using View::View;

    // Called with the height in points that the subviews take, whenever they are laid out.
    void setHeightChanged(std::function<void(double)> handler) { heightChanged_ = std::move(handler); }

    // Also to be called when a subview takes another height.
    void layoutViews() override;

private:
    std::function<void(double)> heightChanged_;
};

} // namespace panel
