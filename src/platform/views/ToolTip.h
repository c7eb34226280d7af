#pragma once

#include <QPoint>
#include <QString>

class QWidget;

namespace platform {

// Shows a text as it is, never as markup, in a dark tooltip at a point of the desktop, for as long as the
// mouse stays on the owner. A text that is too wide for one line is wrapped, and one beyond a thousand
// characters is cut.
void showToolTip(QPoint position, const QString& text, QWidget& owner);

} // namespace platform
