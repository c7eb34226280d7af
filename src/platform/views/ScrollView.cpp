#include "platform/views/ScrollView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double lineStep = 50;
constexpr double barWidth = 4;
constexpr double barMargin = 2;
constexpr double shortestKnob = 24;
constexpr QColor knobColor(255, 255, 255, 90);

} // namespace

// The scroll bar. It takes no presses.
class ScrollView::Bar final : public View {
public:
    using View::View;
    double first = 0; // the shares of the document that are above and in sight
    double shown = 1;

    View* hitTest(QPointF) override { return nullptr; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(knobColor);
        const double length = std::max(shortestKnob, height() * shown);
        const double travel = shown < 1 ? first / (1 - shown) : 0;
        painter.drawRoundedRect(QRectF(0, (height() - length) * travel, barWidth, length), barWidth / 2,
                                barWidth / 2);
    }
};

ScrollView::ScrollView(QWidget* parent)
    : View(parent)
    , bar_(new Bar(this)) {
    bar_->setAttribute(Qt::WA_TransparentForMouseEvents);
    bar_->setHidden(true);
    setFocusPolicy(Qt::StrongFocus);
}

void ScrollView::setDocumentView(View* document) {
    if (document_)
        document_->removeFromSuperview();
    document_ = document;
    offset_ = 0;
    if (document_) {
        addSubview(*document_);
        bar_->raise();
    }
    layoutDocument();
}

void ScrollView::setHorizontalInset(double inset) {
    horizontalInset_ = inset;
    layoutDocument();
}

void ScrollView::setDocumentHeight(double height) {
    documentHeight_ = height;
    layoutDocument();
}

double ScrollView::largestOffset() const {
    return std::max(0.0, documentHeight_ - height());
}

void ScrollView::scrollTo(double offset) {
    offset_ = offset;
    layoutDocument();
}

void ScrollView::scrollToVisible(const QRectF& rect) {
    if (rect.top() < offset_)
        scrollTo(rect.top());
    else if (rect.bottom() > offset_ + height())
        scrollTo(std::min(rect.top(), rect.bottom() - height()));
}

// The rectangle comes from the document, so it is one of this view.
void ScrollView::scrollRectToVisible(const QRectF& rect) {
    if (document_)
        scrollToVisible(rect.translated(-document_->geometry().topLeft()));
}

void ScrollView::layoutDocument() {
    offset_ = std::round(std::clamp(offset_, 0.0, largestOffset()));
    if (document_)
        document_->setFrame(QRectF(horizontalInset_, -offset_, width() - 2 * horizontalInset_,
                                   std::max(documentHeight_, double(height()))));
    const bool scrolls = largestOffset() > 0;
    bar_->setHidden(!scrolls);
    if (scrolls) {
        bar_->first = offset_ / documentHeight_;
        bar_->shown = height() / documentHeight_;
        bar_->setLogicalFrame(
            QRectF(width() - barWidth - barMargin, barMargin, barWidth, height() - 2 * barMargin));
        bar_->update();
    }
    if (document_)
        notifyExposedRectChanged(*document_);
}

void ScrollView::layoutViews() {
    View::layoutViews();
    layoutDocument();
}

void ScrollView::wheelEvent(QWheelEvent* event) {
    const QPoint pixels = event->pixelDelta();
    const double delta = pixels.isNull() ? event->angleDelta().y() / 120.0 * lineStep : pixels.y();
    scrollTo(offset_ - delta);
    event->accept();
}

void ScrollView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        return scrollTo(offset_ - lineStep);
    case Qt::Key_Down:
        return scrollTo(offset_ + lineStep);
    case Qt::Key_PageUp:
        return scrollTo(offset_ - height());
    case Qt::Key_PageDown:
        return scrollTo(offset_ + height());
    case Qt::Key_Home:
        return scrollTo(0);
    case Qt::Key_End:
        return scrollTo(largestOffset());
    default:
        View::keyPressEvent(event);
    }
}

} // namespace platform
