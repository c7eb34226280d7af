#pragma once

#include "platform/images/BundleImages.h"

#include <QString>

#include <utility>

namespace support {

// Takes one image of the bundle away for as long as it lives: a bundle's fault.
class BundleImageHidden final {
public:
    explicit BundleImageHidden(QString name)
        : name_(std::move(name))
        , hidden_(platform::imageNamed(name_)) {
        platform::setImageNamed(name_, platform::Image());
    }
    ~BundleImageHidden() { platform::setImageNamed(name_, hidden_); }
    BundleImageHidden(const BundleImageHidden&) = delete;
    BundleImageHidden& operator=(const BundleImageHidden&) = delete;

private:
    QString name_;
    platform::Image hidden_;
};

} // namespace support
