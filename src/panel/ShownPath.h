#pragma once

#include <QString>

namespace panel {

// A path as people write it: from the home folder on.
[[nodiscard]] QString shownPath(const QString& path);

// A text that is read from the left in every language, such as a path. (In Unicode's terms, an isolate.)
[[nodiscard]] QString leftToRight(const QString& text);

} // namespace panel
