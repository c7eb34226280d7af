#pragma once

#include "platform/plist/Value.h"

#include <optional>
#include <string>

namespace platform::plist {

// The XML form: header and DOCTYPE lines, tabs, keys sorted by their UTF-16 units, a final line feed. A UID
// is written as the dictionary that stands for it in this form; of a date the whole seconds; of a text all
// but lone surrogates; zero without its sign. None for a value that the form cannot hold (anywhere in it a
// null, a set, a dictionary with keys that are no strings, or a date outside the calendar), and for one whose
// shared containers would grow beyond all measure when written out.
[[nodiscard]] std::optional<std::string> writeXml(const Value& value);

} // namespace platform::plist
