#pragma once

#include "platform/plist/Value.h"

#include <optional>
#include <string>

namespace platform::plist {

// A value as JSON in ASCII, one line without a line feed, in which every kind can be told from every other:
// text `"s"`; boolean `true`; integer `{"int":"-5"}`; real `{"real":"%.17g"}` or "nan", "inf", "-inf"; date
// `{"date":"seconds since 2001-01-01 00:00 UTC"}`; data `{"data":"hexadecimal"}`; array `[…]`; dictionary
// `{"dict":{…}}` with its keys sorted; `{"uid":n}`; `{"null":0}`; a set and a dictionary with a key that is
// no text by their counts, `{"set":n}` and `{"dict_nonstring_keys":n}`. A lone surrogate reads `\udXXX`. None
// for a value whose shared containers would grow beyond all measure.
[[nodiscard]] std::optional<std::string> typedJson(const Value& value);

} // namespace platform::plist
