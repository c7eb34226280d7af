#pragma once

#include "platform/views/View.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace platform {

// A description of views, compiled into the program and found by its name. Making one gives its top-level
// views with their outlets connected, each told to awakeFromNib.
class InterfaceFile final {
public:
    using TopLevelObjects = std::vector<std::shared_ptr<View>>;
    using Maker = std::function<TopLevelObjects()>;

    // The file of a name, or null if there is no such file.
    [[nodiscard]] static std::optional<InterfaceFile> named(const QString& name);

    // Adds a file to those that are found. A second one of a name replaces the first, with an empty maker as
    // if there were none.
    static void add(const QString& name, Maker maker);

    [[nodiscard]] TopLevelObjects instantiate() const { return maker_(); }

private:
    explicit InterfaceFile(Maker maker)
        : maker_(std::move(maker)) {}

    Maker maker_;
};

} // namespace platform
