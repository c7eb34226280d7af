#pragma once

#include <string>

namespace ctl {

// Binary property lists of a few hundred bytes in which the text "boom" is named 2^30 times, by arrays that
// hold one array twice.
[[nodiscard]] std::string bombArray();                       // an array with that alone
[[nodiscard]] std::string bombOfKey(const std::string& key); // a dictionary; the key is short and ASCII

} // namespace ctl
