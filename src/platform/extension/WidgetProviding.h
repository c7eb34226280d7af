#pragma once

#include <functional>

namespace platform {

// Whether a widget has something new to show.
enum class UpdateResult { NewData, NoData, Failed };

// The operations of a widget that a panel calls.
class WidgetProviding {
public:
    using UpdateHandler = std::function<void(UpdateResult)>;

    virtual ~WidgetProviding() = default;

    // Calls the handler exactly once before returning. An empty handler is fatal.
    virtual void widgetPerformUpdateWithCompletionHandler(const UpdateHandler& completionHandler) = 0;
};

} // namespace platform
