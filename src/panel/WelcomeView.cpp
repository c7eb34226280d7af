#include "panel/WelcomeView.h"

#include "platform/views/Fonts.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <cmath>

namespace panel {

namespace {

constexpr double titleSize = 15;
constexpr double textSize = 12;
constexpr double margin = 12; // above and below
constexpr double paragraphSpacing = 6;
constexpr double lineSpacing = 1.15; // of a font's own height
constexpr QColor titleColor(255, 255, 255);
constexpr QColor textColor(255, 255, 255, 191);

} // namespace

void WelcomeView::setTexts(const QString& title, const QStringList& paragraphs) {
    title_ = title;
    paragraphs_ = paragraphs;
    layoutViews();
    update();
}

void WelcomeView::layoutViews() {
    View::layoutViews();
    if (heightChanged_)
        heightChanged_(setAll(nullptr));
}

// Sets a paragraph from y on and draws it if there is a painter. Returns where it ends.
double WelcomeView::setText(const QString& text, const QFont& font, double y, QPainter* painter) const {
    QTextOption option(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(layoutDirection());
    QTextLayout layout(text, font);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(bounds().width());
        line.setPosition({0, y});
        y += std::ceil(line.height() * lineSpacing);
    }
    layout.endLayout();
    if (painter)
        layout.draw(painter, {});
    return y;
}

double WelcomeView::setAll(QPainter* painter) const {
    if (painter)
        painter->setPen(titleColor);
    double y = setText(title_, platform::systemFont(titleSize), margin, painter);
    if (painter)
        painter->setPen(textColor);
    for (const QString& paragraph : paragraphs_)
        y = setText(paragraph, platform::systemFont(textSize), y + paragraphSpacing, painter);
    return y + margin;
}

platform::AccessibleTraits WelcomeView::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::StaticText;
    traits.name = title_ + QStringLiteral(". ") + paragraphs_.join(QLatin1Char(' '));
    return traits;
}

void WelcomeView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    setAll(&painter);
}

} // namespace panel
