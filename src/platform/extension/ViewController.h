#pragma once

#include "platform/extension/ExtensionContext.h"
#include "platform/views/View.h"

#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>

namespace platform {

// Owns a view that it loads from an interface file on the first use, and tells the size that the view needs.
class ViewController : public std::enable_shared_from_this<ViewController> {
public:
    ViewController() = default;
    virtual ~ViewController();
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;

    // The name of the interface file that holds the view.
    [[nodiscard]] virtual QString nibName() const = 0;

    // The view. The first call loads it from its interface file, connects the outlets and calls viewDidLoad.
    // A missing or empty interface file is fatal.
    [[nodiscard]] View& view();
    [[nodiscard]] bool isViewLoaded() const { return view_ != nullptr; }

    // The size in points that the view needs; 0 by 0 at first.
    [[nodiscard]] QSizeF preferredContentSize() const { return preferredContentSize_; }
    void setPreferredContentSize(const QSizeF& size);
    // The handler is called for every size that is set, even if it is the same as before.
    void setPreferredContentSizeChanged(std::function<void()> changed) { changed_ = std::move(changed); }

    // The panel that shows the controller; null until there is one.
    [[nodiscard]] const std::shared_ptr<ExtensionContext>& extensionContext() const {
        return extensionContext_;
    }
    void setExtensionContext(std::shared_ptr<ExtensionContext> context) {
        extensionContext_ = std::move(context);
    }

protected:
    // Connects the outlets to the views of the interface file. Called before viewDidLoad.
    virtual void connectOutlets(View& view) = 0;
    // Called once after the view was loaded.
    virtual void viewDidLoad() {}

private:
    std::shared_ptr<View> view_;
    std::shared_ptr<ExtensionContext> extensionContext_;
    QSizeF preferredContentSize_{0, 0};
    std::function<void()> changed_;
};

} // namespace platform
