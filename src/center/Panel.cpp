#include "center/Panel.h"

#include "controller/InterfaceFiles.h"
#include "platform/system/MainQueue.h"

#include <algorithm>
#include <utility>

namespace center {

using namespace std::chrono_literals;

Panel::Panel(Backdrop backdrop, Height height, int contentWidth)
    : window_(std::make_unique<PanelWindow>(backdrop, height, contentWidth)) {
    controller::registerInterfaceFiles();
    window_->setEscapePressed([this] { escapePressed(); });
    window_->setCloseRequested([this] { close(); });
    updateTimer_.setTimerType(Qt::VeryCoarseTimer);
    updateTimer_.setInterval(15min);
    QObject::connect(&updateTimer_, &QTimer::timeout, window_.get(), [this] { askForUpdate(); });
    loadTimer_.setSingleShot(true);
    QObject::connect(&loadTimer_, &QTimer::timeout, window_.get(), [this] { loadIfAwaited(); });
}

Panel::~Panel() {
    window_->setContent(nullptr);
    if (controller_)
        controller_->releaseViews();
}

void Panel::load() {
    const auto old = std::exchange(controller_, std::make_shared<TodayViewController>());
    controller_->setExtensionContext(std::make_shared<platform::ExtensionContext>());
    window_->setContent(controller_);
    if (old)
        old->releaseViews();
}

// In a window that is hidden nothing is held, open or shown.
bool Panel::isInUse() const {
    const auto isOpen = [](const auto& row) { return row->isExpanded(); };
    return window_->isVisible() && (platform::View::isPressHeld() || controller_->actionSheet ||
                                    std::ranges::any_of(controller_->cellArray, isOpen));
}

void Panel::loadIfAwaited() {
    if (!awaitsLoad_)
        return;
    const bool isPending = controller_ && !platform::MainQueue::current().isIdle();
    if (isPending || (controller_ && isInUse())) {
        // Deferred work is done within half a second; a row may stay open as long as its user likes.
        loadTimer_.start(isPending ? 20ms : 1s);
        return;
    }
    awaitsLoad_ = false;
    load();
}

void Panel::open() {
    awaitsLoad_ = true;
    loadIfAwaited();
    window_->moveToEdge();
    window_->show();
    askForUpdate();
    updateTimer_.start();
}

void Panel::close() {
    if (!updateTimer_.isActive())
        return;
    updateTimer_.stop();
    loadTimer_.stop();
    awaitsLoad_ = false;
    platform::View::dropHeldPress();
    window_->hide();
    if (closed_)
        closed_();
}

// A waiting sheet takes Escape for its Cancel, and an answered one takes it for nothing.
void Panel::escapePressed() {
    if (controller_ && controller_->actionSheet)
        controller_->actionSheet->cancelButtonClick();
    else
        close();
}

void Panel::askForUpdate() const {
    controller_->widgetPerformUpdateWithCompletionHandler([](platform::UpdateResult) {});
}

} // namespace center
