#include "platform/extension/ViewController.h"

#include "platform/system/Fatal.h"
#include "platform/views/InterfaceFile.h"

namespace platform {

ViewController::~ViewController() = default;

View& ViewController::view() {
    if (view_)
        return *view_;
    const auto file = InterfaceFile::named(nibName());
    require(file.has_value());
    const auto objects = file->instantiate();
    require(!objects.empty());
    view_ = objects.front();
    connectOutlets(*view_);
    viewDidLoad();
    return *view_;
}

void ViewController::setPreferredContentSize(const QSizeF& size) {
    preferredContentSize_ = size;
    if (changed_)
        changed_();
}

} // namespace platform
