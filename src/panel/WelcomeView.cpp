#include "panel/WelcomeView.h"

#include "panel/Paragraph.h"
#include "platform/views/Fonts.h"

#include <QPainter>

#include <cmath>

namespace panel {

namespace {

constexpr double titleSize = 15;
constexpr double textSize = 12;
constexpr double paragraphSpacing = 6;
constexpr QColor titleColor(255, 255, 255);
constexpr QColor textColor(255, 255, 255, 191);

} // namespace

WelcomeView::WelcomeView(QWidget* parent)
    : View(parent) {
    setContentsMargins(0, margin, 0, margin);
}

void WelcomeView::setTexts(const QString& title, const QStringList& paragraphs) {
    title_ = title;
    paragraphs_ = paragraphs;
    update();
}

// Sets all texts below each other and draws them if there is a painter. Returns where they end.
double WelcomeView::setAll(double width, QPainter* painter) const {
    double y = contentsMargins().top();
    const auto set = [&](const QString& text, double size, const QColor& color) {
        const Paragraph paragraph(text, platform::systemFont(size), width, layoutDirection());
        if (painter) {
            painter->setPen(color);
            paragraph.draw(*painter, {0, y});
        }
        y += paragraph.height();
    };
    set(title_, titleSize, titleColor);
    for (const QString& text : paragraphs_) {
        y += paragraphSpacing;
        set(text, textSize, textColor);
    }
    return y;
}

int WelcomeView::heightForWidth(int width) const {
    return static_cast<int>(std::ceil(setAll(width, nullptr))) + contentsMargins().bottom();
}

platform::AccessibleTraits WelcomeView::accessibleTraits() const {
    platform::AccessibleTraits traits;
    traits.role = QAccessible::StaticText;
    if (!title_.isEmpty())
        traits.name = title_ + QStringLiteral(". ");
    traits.name += paragraphs_.join(QLatin1Char(' '));
    return traits;
}

void WelcomeView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    setAll(bounds().width(), &painter);
}

} // namespace panel
