#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// What a property list holds that the XML form cannot carry to every reader. The widget's own reader takes
// any character and any date. An XML parser refuses the control characters that XML forbids, reads a carriage
// return as a line feed, and may know no year outside 1 to 9999; Python's plistlib is such a reader.
namespace ctl {

// The way from a list's root to a value: positions in arrays, from 0, and keys of dictionaries.
using ValuePath = std::vector<std::variant<std::size_t, std::string_view>>;

// The path in words, as in `record 1: "note", element 2`: positions are counted from 1, and an element of a
// root array is a record. Empty for the root.
[[nodiscard]] std::string describe(const ValuePath& path);

// A text, key or date that not every reader of XML reads as it is.
struct Unportable {
    const ValuePath& path; // of the value; of a key, that of its dictionary with the key as its last step
    std::string what;      // such as `holds U+FFFE, which XML forbids`
};

// Calls `report` for what is not portable in a value, in order, until it returns false. Contents that the
// value shares, short texts apart, are looked at once, so that the time is in proportion to the distinct
// contents.
void findUnportable(const platform::plist::Value& value,
                    const std::function<bool(const Unportable&)>& report);

// The first of them as one sentence, as in `record 1: "note" holds U+FFFE, which XML forbids`.
[[nodiscard]] std::optional<std::string> describeUnportable(const platform::plist::Value& value);

} // namespace ctl
