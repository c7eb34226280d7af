#pragma once

#include <functional>

namespace platform {

// The answer to a panel's question whether a widget has something new to show.
enum class UpdateResult { NewData, NoData, Failed };

// What a panel asks of a widget.
class WidgetProviding {
public:
    using UpdateHandler = std::function<void(UpdateResult)>;

    virtual ~WidgetProviding() = default;

    // Calls the handler exactly once, before it returns. A call without a handler is fatal.
    virtual void widgetPerformUpdateWithCompletionHandler(const UpdateHandler& completionHandler) = 0;
};

} // namespace platform
