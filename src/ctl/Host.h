#pragma once

#include "exchange/FeedReader.h"

#include <string>

// What several commands need of the host's side.
namespace ctl {

// Where the full edition's container is or would be.
[[nodiscard]] std::string containerPath();
[[nodiscard]] bool hasContainer();

// The widget's own list, or the fault over which it would end; empty without a container.
[[nodiscard]] exchange::FeedReading readWidgetsList();

} // namespace ctl
