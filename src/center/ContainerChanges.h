#pragma once

#include "platform/storage/PathWatcher.h"

#include <functional>
#include <memory>

namespace center {

// Tells when anything in the shared folder has changed that may have kept the list from being shown: the
// files in it, the settings, an account's files and icons. Main thread only.
class ContainerChanges final {
public:
    explicit ContainerChanges(std::unique_ptr<platform::PathWatcher> watcher);

    // Called at each change from now on; none to be told no more.
    void watch(std::function<void()> handler);

private:
    std::unique_ptr<platform::PathWatcher> watcher_;
    std::function<void()> changed_;
};

} // namespace center
