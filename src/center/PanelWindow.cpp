#include "center/PanelWindow.h"

#include <QCloseEvent>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr int screenMargin = 12;
constexpr int tallestPicture = 4000;
constexpr double cornerRadius = 14;
constexpr QColor translucentColor(29, 33, 38, 242);
constexpr QColor opaqueColor(29, 33, 38);
constexpr QColor edgeColor(255, 255, 255, 26);
constexpr auto resizeDuration = 200ms;

bool placesItself() {
    return QGuiApplication::platformName() == QStringLiteral("xcb");
}

} // namespace

PanelWindow::PanelWindow(Backdrop backdrop, Height height, int contentWidth)
    : backdrop_(backdrop)
    , height_(height)
    , contentWidth_(contentWidth)
    , scrollView_(new platform::ScrollView(this)) {
    setWindowTitle(QStringLiteral("Korvel Today"));
    setWindowFlags(placesItself() ? Qt::Tool | Qt::FramelessWindowHint
                                  : Qt::Window | Qt::FramelessWindowHint);
    if (backdrop == Backdrop::RoundTranslucent)
        setAttribute(Qt::WA_TranslucentBackground);
    else
        setAttribute(Qt::WA_OpaquePaintEvent);
    // The first Tab goes to the first row; until then no row looks chosen.
    setFocusProxy(scrollView_);
    scrollView_->setFocus();
    scrollView_->setHorizontalInset(horizontalMargin);
    setFixedWidth(contentWidth_ + 2 * horizontalMargin);
    layoutScrollView();
}

PanelWindow::~PanelWindow() {
    if (controller_)
        controller_->setPreferredContentSizeChanged(nullptr);
    scrollView_->setDocumentView(nullptr);
}

void PanelWindow::setContent(std::shared_ptr<platform::ViewController> controller) {
    if (controller_)
        controller_->setPreferredContentSizeChanged(nullptr);
    controller_ = std::move(controller);
    platform::View* view = nullptr;
    if (controller_) {
        view = &controller_->view();
        controller_->setPreferredContentSizeChanged([this] { preferredSizeChanged(); });
    }
    scrollView_->setDocumentView(view);
    preferredSizeChanged();
}

int PanelWindow::tallest() const {
    if (height_ == Height::OfContent)
        return tallestPicture;
    return screen()->availableGeometry().height() - 2 * screenMargin;
}

void PanelWindow::preferredSizeChanged() {
    const double target = controller_ ? controller_->preferredContentSize().height() : 0;
    if (target == targetHeight_ && (resizing_ || contentHeight_ == target))
        return;
    targetHeight_ = target;
    resizing_.reset();
    if (!isVisible()) {
        setContentHeight(target);
        return;
    }
    resizing_ = platform::MainQueue::current().animate(
        resizeDuration, [this, start = contentHeight_, target](double progress) {
            const double eased = QEasingCurve(QEasingCurve::InOutSine).valueForProgress(progress);
            setContentHeight(progress >= 1 ? target : start + (target - start) * eased);
        });
}

void PanelWindow::setContentHeight(double height) {
    contentHeight_ = height;
    const int whole = static_cast<int>(std::min(std::ceil(height), 1e6)) + 2 * verticalMargin;
    setFixedHeight(std::clamp(whole, 1, std::max(1, tallest())));
    layoutScrollView();
    scrollView_->setDocumentHeight(height);
}

void PanelWindow::moveToEdge() {
    const QRect room = screen()->availableGeometry();
    move(room.right() + 1 - width() - screenMargin, room.top() + screenMargin);
}

void PanelWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (backdrop_ == Backdrop::SquareOpaque) {
        painter.fillRect(rect(), opaqueColor);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(translucentColor);
    painter.setPen(QPen(edgeColor, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

void PanelWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutScrollView();
}

// A window that does not show hears of its size only when it does.
void PanelWindow::layoutScrollView() {
    scrollView_->setFrame(QRectF(rect().adjusted(0, verticalMargin, 0, -verticalMargin)));
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && escapePressed_)
        escapePressed_();
    else
        QWidget::keyPressEvent(event);
}

void PanelWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (closeRequested_)
        closeRequested_();
}

} // namespace center
