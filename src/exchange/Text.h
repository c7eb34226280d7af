#pragma once

#include <QString>

#include <string>
#include <string_view>

// Property-list texts (UTF-8, a lone surrogate in its three-byte form) to QString and back. Both ways are
// exact: a leading U+FEFF and lone surrogates stay, which QString's own conversions would drop or replace.
namespace exchange {

[[nodiscard]] QString textFromUtf8(std::string_view bytes);
[[nodiscard]] std::string utf8FromText(const QString& text);

// Whether such a string holds a lone surrogate.
[[nodiscard]] bool hasLoneSurrogate(std::string_view bytes);

} // namespace exchange
