#pragma once

#include "platform/plist/Value.h"

#include <optional>
#include <string>

namespace platform::plist {

// The XML form: header and DOCTYPE lines, tabs, keys sorted by their UTF-16 units, a final line feed. A UID
// is written as the dictionary that stands for it in this form; of a date the whole seconds; of a string all
// but lone surrogates (a byte order mark at its start is written, but a reader drops it); zero without its
// sign. None for what the form cannot hold (anywhere in the value a null, a set, a dictionary with keys that
// are no strings, a date outside the calendar, or more nesting than a reader accepts), and for a value whose
// shared contents would grow too large when they are written out (ExpandedSize.h).
[[nodiscard]] std::optional<std::string> writeXml(const Value& value);

} // namespace platform::plist
