#pragma once

#include "ctl/Report.h"

#include <string>

namespace ctl {

enum class PlistFormat { Json, Xml };

// plist FILE [--to json|xml]: any property list, as JSON in which every kind of value can be told from every
// other, or in the XML form. "-" is standard input. A list that is refused, or that has no XML form, fails
// with one line that names the file, the line or (in a binary list) the offset of the fault, and what is
// wrong.
[[nodiscard]] int showPlist(const std::string& path, PlistFormat format, Streams& streams);

} // namespace ctl
