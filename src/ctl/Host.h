#pragma once

#include "exchange/FeedReader.h"

#include <string>

// The container of the host application, as several commands need it.
namespace ctl {

// The path of the full edition's container, whether or not the container exists.
[[nodiscard]] std::string containerPath();
[[nodiscard]] bool hasContainer();

// The transactions that the widget reads, or the fault at which it would end. Without a container the list is
// empty.
[[nodiscard]] exchange::FeedReading readWidgetsList();

} // namespace ctl
