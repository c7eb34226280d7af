#pragma once

#include "platform/extension/ExtensionContext.h"
#include "platform/views/View.h"

#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>

namespace platform {

// Owns a view that it loads from an interface file when it is first asked for it, and says how large it wants
// to be.
class ViewController : public std::enable_shared_from_this<ViewController> {
public:
    ViewController() = default;
    virtual ~ViewController();
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;

    // The name of the interface file that holds the view.
    [[nodiscard]] virtual QString nibName() const = 0;

    // The view, loaded on the first call: out of its interface file (a missing or empty one is fatal), then
    // viewDidLoad.
    [[nodiscard]] View& view();
    [[nodiscard]] bool isViewLoaded() const { return view_ != nullptr; }

    // The size in points that the view asks for; 0 by 0 at first.
    [[nodiscard]] QSizeF preferredContentSize() const { return preferredContentSize_; }
    void setPreferredContentSize(const QSizeF& size);
    // Told of every size that is set, also of one that is the same.
    void setPreferredContentSizeChanged(std::function<void()> changed) { changed_ = std::move(changed); }

    // The place that shows the controller; none until a panel has taken it.
    [[nodiscard]] const std::shared_ptr<ExtensionContext>& extensionContext() const {
        return extensionContext_;
    }
    void setExtensionContext(std::shared_ptr<ExtensionContext> context) {
        extensionContext_ = std::move(context);
    }

protected:
    // Connects the outlets to what came out of the interface file, before viewDidLoad.
    virtual void connectOutlets(View& view) = 0;
    // Called once per load of the view.
    virtual void viewDidLoad() {}

private:
    std::shared_ptr<View> view_;
    std::shared_ptr<ExtensionContext> extensionContext_;
    QSizeF preferredContentSize_{0, 0};
    std::function<void()> changed_;
};

} // namespace platform
