#include "panel/PanelWindow.h"

#include "panel/Sheet.h"
#include "panel/X11Window.h"
#include "platform/desktop/LayerShell.h"
#include "platform/desktop/WindowSystem.h"

#include <QCloseEvent>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace panel {

using namespace std::chrono_literals;

namespace {

constexpr int tallestPicture = 4000;
constexpr auto resizeDuration = 200ms;

// On Wayland the desktop decides where an ordinary window is placed, and gives it a frame.
Qt::WindowFlags windowKind() {
    if (platform::isOnWayland() && !platform::hasLayerShell())
        return Qt::Window;
    return (platform::isOnX11() ? Qt::Tool : Qt::Window) | Qt::FramelessWindowHint;
}

} // namespace

PanelWindow::PanelWindow(Backdrop backdrop, Height height, int contentWidth)
    : backdrop_(backdrop)
    , height_(height)
    , contentWidth_(contentWidth)
    , scrollView_(new platform::ScrollView(this)) {
    setWindowTitle(QStringLiteral("Korvel Today"));
    setWindowFlags(windowKind());
    applyBackdrop();
    // The first Tab moves the focus to the first row; until then no row has a focus ring.
    setFocusProxy(scrollView_);
    scrollView_->setFocus();
    scrollView_->setHorizontalInset(horizontalMargin);
    setFixedWidth(contentWidth_ + 2 * horizontalMargin);
    layoutScrollView();
    for (const QScreen* screen : QGuiApplication::screens())
        watch(*screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this](const QScreen* screen) { watch(*screen); });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](const QScreen* screen) {
        place_.screenGoes(*screen);
        if (platform::hasLayerShell() && isVisible() && windowHandle()->screen() == screen)
            close(); // not every compositor tells a docked window that it has gone with its screen
        else
            screensChanged();
    });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &PanelWindow::screensChanged);
}

void PanelWindow::applyBackdrop() {
    const bool isTranslucent = backdrop_ == Backdrop::RoundTranslucent;
    setAttribute(Qt::WA_TranslucentBackground, isTranslucent);
    setAttribute(Qt::WA_NoSystemBackground, isTranslucent);
    setAttribute(Qt::WA_OpaquePaintEvent, !isTranslucent);
}

void PanelWindow::setBackdrop(Backdrop backdrop) {
    if (backdrop == backdrop_)
        return;
    backdrop_ = backdrop;
    destroy(); // a window has its pixels' form for life
    applyBackdrop();
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
    const double offset = isVisible() ? scrollView_->offset() : 0;
    scrollView_->setDocumentView(view);
    scrollView_->scrollTo(offset);
    preferredSizeChanged();
}

int PanelWindow::tallest() const {
    if (height_ == Height::OfContent)
        return tallestPicture;
    return place_.tallest();
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
    if (backdrop_ == Backdrop::RoundTranslucent) {
        grantedHeight_ = platform::isOnX11() ? sheetHeight_ : tallestPicture;
        setWindowHeight(std::max(sheetHeight_, sheetHeightOf(target)));
    }
    resizing_ = platform::MainQueue::current().animate(
        resizeDuration, [this, start = contentHeight_, target](double progress) {
            const double eased = QEasingCurve(QEasingCurve::InOutSine).valueForProgress(progress);
            setSheet(progress >= 1 ? target : start + (target - start) * eased);
            if (progress < 1 || height() == sheetHeight_)
                return;
            repaint(); // a window that is lowered first would cut the sheet of before
            setWindowHeight(sheetHeight_);
        });
}

int PanelWindow::sheetHeightOf(double contentHeight) const {
    const int whole = static_cast<int>(std::min(std::ceil(contentHeight), 1e6)) + 2 * verticalMargin;
    return std::clamp(whole, 1, tallest());
}

void PanelWindow::setContentHeight(double height) {
    setWindowHeight(sheetHeightOf(height));
    setSheet(height);
}

// While its height changes, a translucent window is as high as the taller of both heights, and the sheet
// moves in it. The window manager takes its time for a new size, so that a sheet which has the new one
// already would be cut: it would have square corners.
void PanelWindow::setSheet(double contentHeight) {
    contentHeight_ = contentHeight;
    sheetHeight_ = sheetHeightOf(contentHeight);
    if (backdrop_ == Backdrop::SquareOpaque)
        setWindowHeight(sheetHeight_);
    layoutScrollView();
    scrollView_->setDocumentHeight(contentHeight);
    update();
}

QRect PanelWindow::sheet() const {
    if (backdrop_ == Backdrop::SquareOpaque)
        return rect();
    const bool isMoving = contentHeight_ != targetHeight_;
    const int shown = isMoving ? std::min(sheetHeight_, grantedHeight_) : sheetHeight_;
    return {0, 0, width(), std::min(shown, height())}; // as wide also where it has no height yet
}

// Qt states a place with each size, and on X11 it may have a wrong one in mind.
void PanelWindow::setWindowHeight(int height) {
    triesForHeight_ = 0;
    move(place_.state({width(), height}));
    setFixedHeight(height);
}

// Qt learns late that the focus has left a hidden window. If it is shown again before, Qt never tells that it
// has the focus; a new window of the window system has it told. When a screen has gone, Qt may have made the
// window system's window anew, and not as one that is docked.
void PanelWindow::dock(QScreen* screen) {
    if (isFocused() || platform::hasLayerShell())
        destroy();
    place_.dock(screen);
    setContentHeight(contentHeight_);
    if (!platform::hasLayerShell())
        return;
    create();
    platform::dockInLayerShell(*windowHandle(), WindowPlace::screenMargin);
    connect(windowHandle(), &QWindow::screenChanged, this, &PanelWindow::screenChosen);
}

// The compositor has docked the window on this screen.
void PanelWindow::screenChosen(QScreen* screen) {
    place_.dock(screen);
    if (isVisible())
        setContentHeight(contentHeight_);
}

// A change of the scale is one of the geometry, which is in points.
void PanelWindow::watch(const QScreen& screen) {
    connect(&screen, &QScreen::geometryChanged, this, &PanelWindow::screensChanged);
    connect(&screen, &QScreen::availableGeometryChanged, this, &PanelWindow::screensChanged);
}

void PanelWindow::screensChanged() {
    if (!isVisible())
        return;
    screensSettle_.setRemainingTime(1s);
    if (const auto here = isPlaced_ ? placeOfX11Window(*windowHandle()) : std::nullopt)
        place_.screensChanged(*here);
    setContentHeight(contentHeight_);
}

// A Wayland compositor may ignore what is asked for a window that has no picture yet, and the token is spent.
void PanelWindow::takeFocus(const QString& activationToken) {
    hadFocus_ = isFocused();
    if (platform::isOnX11())
        raise();
    if (platform::isOnWayland() && awaitsPainting_)
        focusRequest_ = activationToken;
    else
        requestFocus(activationToken);
}

// Qt takes the token from the environment as it asks; no child process is to inherit it.
void PanelWindow::requestFocus(const QString& activationToken) {
    constexpr const char* variable = "XDG_ACTIVATION_TOKEN";
    const bool hasToken = !activationToken.isEmpty() && platform::isOnWayland();
    if (hasToken)
        qputenv(variable, activationToken.toUtf8());
    windowHandle()->requestActivate();
    if (hasToken)
        qunsetenv(variable);
}

// As far as Qt knows.
bool PanelWindow::isFocused() const {
    return windowHandle() && QGuiApplication::focusWindow() == windowHandle();
}

// On X11, Qt tells a tenth of a second after a window was hidden that none has the focus, even where another
// has got it in between; and it may tell that a window has the focus before the X server gives it.
bool PanelWindow::hasLostFocus() const {
    return hadFocus_ && !isFocused() && !(windowHandle() && isFocusedX11Window(*windowHandle()));
}

void PanelWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && !platform::isOnX11())
        hadFocus_ = hadFocus_ || isFocused();
}

bool PanelWindow::nativeEvent(const QByteArray& eventType, void* message, qintptr* result) {
    hadFocus_ = hadFocus_ || isX11FocusIn(eventType, message);
    return QWidget::nativeEvent(eventType, message, result);
}

void PanelWindow::paintEvent(QPaintEvent*) {
    if (std::exchange(awaitsPainting_, false)) // the views above are painted after it
        QMetaObject::invokeMethod(
            this, [this] { painted(); }, Qt::QueuedConnection);
    QPainter painter(this);
    paintSheet(painter, backdrop_, sheet());
}

void PanelWindow::painted() {
    if (!isVisible())
        return;
    if (const auto token = std::exchange(focusRequest_, std::nullopt))
        requestFocus(*token);
    if (painted_)
        painted_();
}

void PanelWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layoutScrollView();
    if (platform::isOnWayland())
        insistOnHeight();
}

// A Wayland compositor answers each size with that size. An answer that comes after the window has taken
// another height gives it the former one back. The limit is for a compositor that insists on its own.
void PanelWindow::insistOnHeight() {
    constexpr int mostTries = 3;
    if (height() == minimumHeight() || triesForHeight_ == mostTries)
        return;
    ++triesForHeight_;
    QMetaObject::invokeMethod(
        this, [this] { resize(minimumSize()); }, Qt::QueuedConnection);
}

// A window manager moves windows of its own accord when the screens change, perhaps after this window has
// been docked anew; then its place is stated once more.
void PanelWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (!isPlaced_)
        return;
    const QPoint here = placeOfX11Window(*windowHandle()).value_or(pos());
    const bool isManagers = !place_.isMoved() && !place_.isStated(here) && !screensSettle_.hasExpired();
    if (!isManagers)
        return place_.windowIsAt(here);
    screensSettle_ = QDeadlineTimer();
    setWindowHeight(height());
}

// A hidden window has no resize event, so this is called for each change of the height.
void PanelWindow::layoutScrollView() {
    scrollView_->setFrame(QRectF(sheet().adjusted(0, verticalMargin, 0, -verticalMargin)));
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

void PanelWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    awaitsPainting_ = true;
    windowHandle()->installEventFilter(this);
    setX11Background(*windowHandle(), backdrop_ == Backdrop::SquareOpaque ? sheetColor.rgb() : 0);
}

void PanelWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    isPlaced_ = false;
    focusRequest_.reset();
}

// The window system's window receives each event before the widget under the mouse does. A window manager has
// placed a window by the time that it can be seen.
bool PanelWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose && isVisible() && windowHandle()->isExposed())
        isPlaced_ = true;
    if (event->type() == QEvent::Resize)
        grantedHeight_ = static_cast<QResizeEvent*>(event)->size().height();
    if (event->type() == QEvent::MouseButtonRelease && mouseReleased_)
        mouseReleased_();
    return QWidget::eventFilter(watched, event);
}

} // namespace panel
