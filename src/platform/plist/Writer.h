#pragma once

#include "platform/plist/Value.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace platform::plist {

// Takes a list's bytes piece by piece; false where it cannot take any more, and it is asked no more then.
using Sink = std::function<bool(std::string_view)>;

// The XML form: header and DOCTYPE lines, tabs, keys sorted by their UTF-16 units, a final line feed. A UID
// is written as the dictionary that stands for it in this form; of a date the whole seconds; of a text all
// but lone surrogates (a byte order mark at its start is written, but a reader drops it); zero without its
// sign. None for what the form cannot hold (anywhere in the value a null, a set, a dictionary with keys that
// are no strings, a date outside the calendar, or more nesting than a reader accepts), and for a value whose
// shared containers would grow beyond all measure when written out.
[[nodiscard]] std::optional<std::string> writeXml(const Value& value);

// The same in pieces of some 64 KB, so that no list is held in memory whole. False for what is refused, and
// where the sink took less than all: some pieces may have gone to it by then.
[[nodiscard]] bool writeXml(const Value& value, const Sink& sink);

} // namespace platform::plist
