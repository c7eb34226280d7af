#pragma once

#include "platform/plist/Value.h"

#include <optional>
#include <string>

namespace platform::plist {

// The XML form: header and DOCTYPE lines, tabs, keys sorted, a final line feed. None for a value that the form
// cannot hold (a null, a set or a UID anywhere in it).
[[nodiscard]] std::optional<std::string> writeXml(const Value& value);

} // namespace platform::plist
