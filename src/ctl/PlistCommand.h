#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

#include <string>

namespace ctl {

enum class PlistFormat { Json, Xml };

// Prints a property list of any form, as typed JSON or in the XML form, and returns the exit status. "-" is
// standard input. On a terminal, what is unsafe there is a character reference in the XML. The error message
// for a list that cannot be read names the file, the place (a line, or an offset in a binary list) and what
// is wrong. A list without an XML form is an error for that format.
[[nodiscard]] int showPlist(const std::string& path, PlistFormat format, Streams& streams);

// plist FILE [--to json|xml]: the same with the arguments of the command line; JSON is the default.
[[nodiscard]] int plistFile(const Options& options, Streams& streams);

} // namespace ctl
