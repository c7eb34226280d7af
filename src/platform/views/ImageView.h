#pragma once

#include "platform/images/Image.h"
#include "platform/views/View.h"

namespace platform {

// Shows an image in its middle, scaled down in proportion where it is larger than the view, never up.
class ImageView final : public View {
    Q_OBJECT

public:
    explicit ImageView(QWidget* parent = nullptr);

    [[nodiscard]] const Image& image() const { return image_; }
    void setImage(const Image& image);

    [[nodiscard]] AccessibleTraits accessibleTraits() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Image image_;
};

} // namespace platform
