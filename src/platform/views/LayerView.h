#pragma once

#include "platform/views/View.h"

namespace platform {

// A view with a layer, which may cut what is filled inside it to round corners.
class LayerView final : public View {
    Q_OBJECT

public:
    explicit LayerView(QWidget* parent = nullptr);

    [[nodiscard]] bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);
    [[nodiscard]] double cornerRadius() const { return cornerRadius_; }
    void setCornerRadius(double radius); // points

private:
    double cornerRadius_ = 0;
    bool masksToBounds_ = false;
};

} // namespace platform
