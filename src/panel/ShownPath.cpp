#include "panel/ShownPath.h"

#include <QDir>

namespace panel {

QString shownPath(const QString& path) {
    const QString home = QDir::homePath();
    if (path != home && !path.startsWith(home + QLatin1Char('/')))
        return path;
    return QLatin1Char('~') + path.mid(home.size());
}

QString leftToRight(const QString& text) {
    return QChar(0x2066) + text + QChar(0x2069);
}

} // namespace panel
