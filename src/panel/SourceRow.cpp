#include "panel/SourceRow.h"

#include "panel/Paragraph.h"
#include "panel/ShownPath.h"
#include "platform/images/BundleImages.h"
#include "platform/views/Fonts.h"
#include "platform/views/TextLine.h"

#include <QFileInfo>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace panel {

namespace {

constexpr QRectF iconFrame(4, 10, 30, 30); // in the middle of that of an icon in the list
constexpr double textX = 50;               // of the titles in the list
constexpr double titleY = 6;
constexpr double titleHeight = 20;
constexpr double subtitleY = 26;
constexpr double subtitleHeight = 18;
constexpr double faultIcon = 12;
constexpr double faultX = 66;
constexpr double faultMargin = 8; // below it
constexpr double titleSize = 15;
constexpr double subtitleSize = 12;
constexpr double pressedAlpha = 0.5;
constexpr double focusRadius = 4;

constexpr QColor textColor(255, 255, 255);
constexpr QColor subtitleColor(255, 255, 255, 191);
constexpr QColor faultColor(243, 123, 5); // that of what is overdue
constexpr QColor focusColor(255, 255, 255, 90);
constexpr QColor separatorColor(255, 255, 255, 31);

// A text that is cut in its middle where it is wider.
QString fitting(const QString& text, double size, double width) {
    const platform::ExactFont exact = platform::exactFont(platform::systemFont(size));
    return QFontMetricsF(exact.font)
        .elidedText(platform::singleLine(text), Qt::ElideMiddle, std::max(0.0, width) / exact.scale);
}

Paragraph faultText(const QString& fault, double width, Qt::LayoutDirection direction) {
    return {leftToRight(fault), platform::systemFont(subtitleSize), width - faultX, direction};
}

} // namespace

SourceRow::SourceRow(const Source& source, QWidget* parent)
    : View(parent)
    , source_(source) {
    setFocusPolicy(Qt::TabFocus);
}

void SourceRow::setSource(const Source& source) {
    if (source_ == source)
        return;
    source_ = source;
    isReading_ = false;
    fault_.clear();
    update();
    notifyBusyChanged();
}

void SourceRow::setFault(const QString& reason) {
    isReading_ = false;
    fault_ = reason;
    fault_.replace(source_.path, shownPath(source_.path));
    update();
    notifyBusyChanged();
}

void SourceRow::choose() {
    if (isReading_)
        return;
    isReading_ = true;
    fault_.clear();
    update();
    notifyBusyChanged();
    if (const auto chosen = chosen_)
        chosen();
}

void SourceRow::mouseDown(const platform::MouseEvent&) {
    setPressed(!isReading_);
}

void SourceRow::mouseDragged(const platform::MouseEvent& event) {
    setPressed(!isReading_ && rect().contains(event.positionInTarget.toPoint()));
}

void SourceRow::mouseUp(const platform::MouseEvent& event) {
    mouseDragged(event);
    if (!isPressed_)
        return;
    setPressed(false);
    choose();
}

void SourceRow::mouseCancelled() {
    setPressed(false);
}

void SourceRow::setPressed(bool pressed) {
    if (isPressed_ == pressed)
        return;
    isPressed_ = pressed;
    update();
}

platform::View* SourceRow::clickTarget() {
    return isReading_ ? nullptr : this;
}

void SourceRow::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space && event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return View::keyPressEvent(event);
    if (!event->isAutoRepeat())
        choose();
}

void SourceRow::focusInEvent(QFocusEvent* event) {
    View::focusInEvent(event);
    scrollRectToVisible(bounds());
}

int SourceRow::heightForWidth(int width) const {
    if (fault_.isEmpty())
        return contentHeight;
    const double height = faultText(fault_, width, layoutDirection()).height();
    return contentHeight + static_cast<int>(std::ceil(height + faultMargin));
}

QString SourceRow::title() const {
    return fitting(QFileInfo(source_.path).fileName(), titleSize, width() - textX);
}

// The program's name, which is never shortened, and the folder, shortened to the room that is left. In a
// language that is read from the right, the name stands to the right of the folder.
QString SourceRow::subtitle() const {
    if (isReading_)
        return qtTrId("WelcomeReading");
    const QChar mark(layoutDirection() == Qt::RightToLeft ? 0x200f : 0x200e);
    const QString program = mark + source_.program + mark + QStringLiteral(" · ");
    const double room = width() - textX - platform::textWidth(program, platform::systemFont(subtitleSize));
    const QString folder = shownPath(QFileInfo(source_.path).path());
    return program + leftToRight(fitting(folder, subtitleSize, room));
}

QString SourceRow::toolTipText() const {
    const QChar cut(0x2026);
    return title().contains(cut) || subtitle().contains(cut) ? leftToRight(shownPath(source_.path))
                                                             : QString();
}

platform::AccessibleTraits SourceRow::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::Button;
    traits.name = qtTrId("WelcomeShowFile").arg(QFileInfo(source_.path).fileName(), source_.program);
    traits.description = shownPath(QFileInfo(source_.path).path());
    for (const QString& state : {isReading_ ? qtTrId("WelcomeReading") : QString(), fault_})
        if (!state.isEmpty())
            traits.description += QStringLiteral(", ") + state;
    traits.actions = {QAccessibleActionInterface::pressAction()};
    traits.isBusy = isReading_;
    return traits;
}

void SourceRow::performAccessibleAction(const QString&) {
    choose();
}

// A rectangle whose x counts from the leading edge.
QRectF SourceRow::placed(const QRectF& logical) const {
    if (layoutDirection() == Qt::LeftToRight)
        return logical;
    return {width() - logical.right(), logical.y(), logical.width(), logical.height()};
}

void SourceRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (showsHover())
        paintHover(painter, QRectF(rect()).adjusted(0, 1, 0, -2));
    painter.setOpacity(isPressed_ ? pressedAlpha : 1);
    drawContent(painter);
    if (!fault_.isEmpty())
        drawFault(painter);
    painter.setOpacity(1);
    drawFrame(painter);
}

void SourceRow::drawContent(QPainter& painter) const {
    const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading);
    const double room = width() - textX;
    const double shown = painter.opacity();
    if (isReading_)
        painter.setOpacity(pressedAlpha);
    platform::imageNamed(QStringLiteral("planFile")).draw(painter, placed(iconFrame));
    painter.setPen(textColor);
    const platform::TextLine name(title(), platform::systemFont(titleSize));
    name.draw(painter, placed({textX, titleY, room, titleHeight}), side);
    painter.setOpacity(shown);
    painter.setPen(subtitleColor);
    const platform::TextLine below(subtitle(), platform::systemFont(subtitleSize));
    below.draw(painter, placed({textX, subtitleY, room, subtitleHeight}), side);
}

void SourceRow::drawFault(QPainter& painter) const {
    const platform::Image glyph = platform::imageNamed(QStringLiteral("transactionOverdue"));
    const double lineHeight = QFontMetricsF(platform::systemFont(subtitleSize)).height();
    const double glyphY = contentHeight + std::round((lineHeight - faultIcon) / 2);
    glyph.tinted(faultColor).draw(painter, placed({textX, glyphY, faultIcon, faultIcon}));
    painter.setPen(faultColor);
    const Paragraph text = faultText(fault_, width(), layoutDirection());
    text.draw(painter, placed({faultX, contentHeight, width() - faultX, text.height()}).topLeft());
}

// The line below the row, of one device pixel, and the focus ring.
void SourceRow::drawFrame(QPainter& painter) const {
    const double hairline = 1.0 / devicePixelRatioF();
    painter.fillRect(placed({textX, height() - hairline, width() - textX, hairline}), separatorColor);
    if (!showsFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(focusColor, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 1.5, -0.5, -2.5), focusRadius, focusRadius);
}

} // namespace panel
