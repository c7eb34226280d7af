#pragma once

#include "platform/plist/Value.h"

#include <QString>

#include <iosfwd>
#include <string>

// JSON (RFC 8259) as the companion writes it. It is not the JSON library's: a real without a fraction is
// written without one ("5"), a control character as \u000a, and a lone surrogate as an escape, which the
// library refuses. What is unsafe on a terminal (Characters.h) is always an escape, which a parser reads as
// the same character.
namespace ctl {

// A string in quotes, in UTF-8.
[[nodiscard]] std::string jsonString(const QString& text);

// The same in ASCII: every other UTF-16 unit is an escape too.
[[nodiscard]] std::string asciiJsonString(const QString& text);

[[nodiscard]] std::string jsonInteger(platform::plist::Integer integer);

// A number with the fewest digits that are read back as the same double. JSON has no numbers that are not
// finite: they are the strings "nan", "inf" and "-inf".
[[nodiscard]] std::string jsonNumber(double number);

// Writes a property-list value as it goes: strings, booleans, numbers, arrays and dictionaries as JSON has
// them, keys in their order. The other kinds are written as typed JSON (`{"data":"hexadecimal"}`). A value
// that shares its contents often may be of any length: ask PrintBudget first.
void writeJson(std::ostream& out, const platform::plist::Value& value);

// The same as a string.
[[nodiscard]] std::string jsonValue(const platform::plist::Value& value);

} // namespace ctl
