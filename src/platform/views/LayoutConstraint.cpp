#include "platform/views/LayoutConstraint.h"

namespace platform {

LayoutConstraint::LayoutConstraint(double constant, QObject* owner)
    : QObject(owner)
    , constant_(constant) {}

void LayoutConstraint::setConstant(double constant) {
    animation_ = 0;
    moveTo(constant);
}

void LayoutConstraint::moveTo(double constant) {
    if (constant_ == constant)
        return;
    constant_ = constant;
    if (changed_)
        changed_();
}

} // namespace platform
