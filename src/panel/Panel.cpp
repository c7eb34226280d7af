#include "panel/Panel.h"

#include "controller/WidgetInterfaceFiles.h"
#include "model/TransactionCounts.h"
#include "panel/ListFocus.h"
#include "panel/Welcome.h"
#include "platform/desktop/WindowSystem.h"
#include "platform/system/MainQueue.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <utility>

namespace panel {

using namespace std::chrono_literals;

Panel::Panel(Backdrop backdrop, Height height, int contentWidth,
             std::unique_ptr<exchange::LoadTriggers> triggers)
    : window_(std::make_unique<PanelWindow>(backdrop, height, contentWidth))
    , triggers_(std::move(triggers)) {
    controller::registerWidgetInterfaceFiles();
    window_->setEscapePressed([this] { escapePressed(); });
    window_->setCloseRequested([this] { close(); });
    window_->setPainted([this] {
        if (shown_)
            shown_();
    });
    updateTimer_.setTimerType(Qt::VeryCoarseTimer);
    updateTimer_.setInterval(15min);
    QObject::connect(&updateTimer_, &QTimer::timeout, window_.get(), [this] { askForUpdate(); });
    if (triggers_)
        triggers_->setLoadNeeded([this] { loadWhenIdle(); });
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, window_.get(),
                     [this] { hideIfFocusIsLost(); });
    // A press can end without deferring work. The empty work makes the queue tell that it is idle after the
    // release.
    window_->setMouseReleased([this] {
        if (looksWhenIdle_)
            platform::MainQueue::current().after(0ms, {});
    });
}

Panel::~Panel() {
    window_->setContent(nullptr);
    if (controller_)
        controller_->releaseViews();
}

void Panel::load() {
    if (triggers_)
        triggers_->listWillLoad();
    const auto old = std::exchange(controller_, std::make_shared<TodayViewController>());
    controller_->setExtensionContext(std::make_shared<platform::ExtensionContext>());
    std::optional<ListFocus> focus;
    if (old && old->isViewLoaded() && window_->isVisible())
        focus.emplace(*old, window_->focusWidget());
    loadContent();
    if (focus && controller_->isViewLoaded())
        focus->giveTo(*controller_);
    if (old)
        old->releaseViews();
    if (triggers_)
        triggers_->listDidLoad(controller_->transactionsArray);
    tellCounts();
}

// The controller of a list that is not there keeps no view. What stands in for it stays as long as there is
// none, with what it offers and the keyboard in it.
void Panel::loadContent() {
    if (!Welcome::isDue()) {
        window_->setContent(controller_);
        welcome_.reset();
    } else if (welcome_) {
        welcome_->refresh();
    } else {
        welcome_ = std::make_shared<Welcome>();
        welcome_->setChosen([this](int number) {
            if (sourceChosen_)
                sourceChosen_(number);
        });
        window_->setContent(welcome_);
    }
}

// A hidden window is not in use, whatever state its view is in.
bool Panel::isHeld() const {
    return window_->isVisible() && (platform::View::isPressHeld() || controller_->actionSheet);
}

bool Panel::isInUse() const {
    const auto isOpen = [](const auto& row) { return row->isExpanded(); };
    return isHeld() || (window_->isVisible() && std::ranges::any_of(controller_->cellArray, isOpen));
}

// Whatever ends the use of a view (a row closes, a sheet is answered, a press ends) defers work, so it is
// enough to look again each time the queue becomes idle.
void Panel::loadIfAwaited() {
    if (!awaitsLoad_)
        return;
    if (controller_ && (!platform::MainQueue::current().isIdle() || isInUse())) {
        lookAgainWhenIdle();
        return;
    }
    awaitsLoad_ = false;
    if (!mayLoad_ || mayLoad_())
        load();
}

void Panel::lookAgainWhenIdle() {
    if (std::exchange(looksWhenIdle_, true))
        return;
    platform::MainQueue::current().whenNextIdle([this, window = QPointer(window_.get())] {
        if (!window) // the panel is gone with its window
            return;
        looksWhenIdle_ = false;
        hideIfFocusIsLost();
        loadIfAwaited();
    });
}

void Panel::hideIfFocusIsLost() {
    if (!window_->isVisible() || !hidesOnFocusLoss_ || !window_->hasLostFocus())
        return;
    if (!platform::MainQueue::current().isIdle() || isHeld())
        lookAgainWhenIdle();
    else
        close();
}

void Panel::loadWhenIdle() {
    awaitsLoad_ = true;
    loadIfAwaited();
}

void Panel::open(const Opening& opening) {
    hidesOnFocusLoss_ = opening.hidesOnFocusLoss;
    loadWhenIdle();
    if (!window_->isVisible()) {
        askForSources();
        if (backdropOfDesktop_)
            window_->setBackdrop(backdropOfDesktop_());
        window_->dock(platform::screenNamed(opening.screen));
        window_->show();
    } else if (shown_) {
        shown_();
    }
    window_->takeFocus(opening.activationToken);
    askForUpdate();
    updateTimer_.start();
}

void Panel::askForSources() {
    if (!welcome_)
        return;
    welcome_->beginOffers();
    if (sourcesWanted_)
        sourcesWanted_();
}

void Panel::close() {
    if (!updateTimer_.isActive())
        return;
    updateTimer_.stop();
    platform::View::dropHeldPress();
    window_->hide();
    if (closed_)
        closed_();
    loadIfAwaited();
}

// A waiting sheet takes Escape for its Cancel, and an answered one takes it for nothing.
void Panel::escapePressed() {
    if (controller_ && controller_->actionSheet)
        controller_->actionSheet->cancelButtonClick();
    else
        close();
}

// The list changes when it is loaded and when the user has chosen something, which defers work.
void Panel::setCountsChanged(std::function<void(const Counts&)> handler) {
    countsChanged_ = std::move(handler);
    counts_.reset();
    tellCounts();
    countWhenIdle();
}

void Panel::countWhenIdle() {
    platform::MainQueue::current().whenNextIdle([this, window = QPointer(window_.get())] {
        if (!window) // the panel is gone with its window
            return;
        tellCounts();
        countWhenIdle();
    });
}

void Panel::tellCounts() {
    if (!countsChanged_ || !controller_)
        return;
    const TransactionCounts all = countsOf(controller_->transactionsArray);
    const Counts counts{all.overdue, all.dueToday};
    if (std::exchange(counts_, counts) != counts)
        countsChanged_(counts);
}

void Panel::askForUpdate() const {
    controller_->widgetPerformUpdateWithCompletionHandler([](platform::UpdateResult) {});
}

} // namespace panel
