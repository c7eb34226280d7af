#pragma once

#include <QString>

namespace platform {

// The family of real fonts that stands behind a generic name ("Sans Serif") on this desktop, as fontconfig
// chooses it for the user's language; any other name as it is. Qt loads a generic name only after it has
// looked up every font to fall back on, which takes milliseconds on the way to the first frame.
[[nodiscard]] QString concreteFontFamily(const QString& family);

} // namespace platform
