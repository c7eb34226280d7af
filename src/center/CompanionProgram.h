#pragma once

#include <QString>

namespace center {

// The path of another program of this project: beside this one, or where PATH leads. Its name where it is
// nowhere.
[[nodiscard]] QString companionProgram(const char* name);

} // namespace center
