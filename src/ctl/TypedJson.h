#pragma once

#include "platform/plist/Value.h"

#include <iosfwd>

namespace ctl {

// Writes a property-list value as one line of ASCII JSON, without a line feed, in which every kind of value
// can be told from every other:
//
//   string      "s"; control characters and the UTF-16 units outside ASCII are escapes, lone surrogates too
//   boolean     true
//   integer     {"int":"-5"}
//   real        {"real":"%.17g"}, {"real":"nan"}, {"real":"inf"} or {"real":"-inf"}
//   date        {"date":"%.17g"}, in seconds since 2001-01-01 00:00 UTC
//   data        {"data":"00ff"}
//   array       [...]
//   dictionary  {"dict":{...}}, its keys sorted by their UTF-16 units
//   UID         {"uid":3}
//   null        {"null":0}
//   set         {"set":2}, the number of its members
//   dictionary with a key that is not a string: {"dict_nonstring_keys":2}, the number of its entries
//
// It is written as it goes. A value that shares its contents often may be of any length: ask PrintBudget
// first.
void writeTypedJson(std::ostream& out, const platform::plist::Value& value);

} // namespace ctl
