#include "platform/views/ToolTip.h"

#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <QPalette>
#include <QToolTip>

namespace platform {

namespace {

constexpr double textSize = 12;
constexpr double widestLine = 320;
constexpr qsizetype longestShown = 1000;
constexpr QColor backgroundColor(52, 58, 66);
constexpr QColor textColor(240, 242, 244);

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::ToolTipBase, backgroundColor);
    palette.setColor(QPalette::ToolTipText, textColor);
    return palette;
}

// The toolkit takes what looks like markup for markup, and wraps nothing else.
QString shownText(const QString& text, const QFont& font) {
    const QString head =
        text.size() > longestShown ? text.left(longestShown) + QChar(0x2026) /* an ellipsis */ : text;
    if (!Qt::mightBeRichText(head) && textWidth(head, font) <= widestLine)
        return head;
    return QStringLiteral("<p>%1</p>").arg(singleLine(head).toHtmlEscaped());
}

} // namespace

void showToolTip(QPoint position, const QString& text, QWidget& owner) {
    const QFont font = systemFont(textSize);
    QToolTip::setPalette(darkPalette());
    QToolTip::setFont(font);
    QToolTip::showText(position, shownText(text, font), &owner);
}

} // namespace platform
