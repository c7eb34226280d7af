#pragma once

#include "platform/plist/Value.h"

#include <QString>

#include <string>

// JSON (RFC 8259) in UTF-8, as the companion writes it.
namespace ctl {

// A text in quotes; control characters and lone surrogates as \u escapes.
[[nodiscard]] std::string jsonText(const QString& text);

// A number with the fewest digits that read back as the very same double. JSON has none for those that are
// not finite: they are the texts "nan", "inf" and "-inf".
[[nodiscard]] std::string jsonNumber(double number);

// A property-list value: texts, booleans, numbers, arrays and dictionaries as JSON has them, keys in their
// order; the other kinds as typed JSON has them (`{"data":"hexadecimal"}`).
[[nodiscard]] std::string jsonValue(const platform::plist::Value& value);

} // namespace ctl
