#include "center/Panel.h"

#include "controller/InterfaceFiles.h"

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

void Panel::open() {
    load();
    window_->moveToEdge();
    window_->show();
    askForUpdate();
    updateTimer_.start();
}

void Panel::close() {
    if (!updateTimer_.isActive())
        return;
    updateTimer_.stop();
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
