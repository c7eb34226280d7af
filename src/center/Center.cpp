#include "center/Center.h"

#include "model/HostUrls.h"
#include "platform/system/Workspace.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr auto longestClick = 500ms; // from the press that takes the focus to what comes of it
// More often than a hand clicks.
constexpr std::size_t mostOpenings = 20;
constexpr auto openingPeriod = 10s;
// A panel that comes and goes is of less use than one with an old list.
constexpr std::size_t mostRestarts = 3;
constexpr auto restartPeriod = 30s;
constexpr auto settling = 100ms; // a host writes several files, one after the other

RestartPolicy::Duration now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

Center::Center(std::unique_ptr<platform::PathWatcher> watcher)
    : openings_(mostOpenings, openingPeriod)
    , restarts_(mostRestarts, restartPeriod)
    , changes_(std::move(watcher)) {
    extension_.setReady([this] { extensionReady(); });
    extension_.setReceived([this](const channel::FromExtension& message) { take(message); });
    extension_.setEnded([this](bool wasAsked) { extensionEnded(wasAsked); });
    nextStart_.setSingleShot(true);
    QObject::connect(&nextStart_, &QTimer::timeout, &nextStart_, [this] { startExtension(); });
}

Center::~Center() = default;

void Center::start() {
    startExtension();
}

void Center::startExtension() {
    if (extension_.isRunning() || isQuitting_)
        return;
    stopWaiting();
    startsAnewWhenHidden_ = isPending_ = false;
    policy_.started(now());
    extension_.start();
}

void Center::stopWaiting() {
    nextStart_.stop();
    changes_.watch({});
}

void Center::show(const channel::Show& request) {
    if (isQuitting_)
        return;
    asked_ = lastAsked_ = request;
    isUnanswered_ = extension_.isReady() || extension_.isEnding();
    if (extension_.isReady()) {
        extension_.send(request);
        return;
    }
    startExtension();
    if (isFailureShown())
        showFailure();
}

void Center::toggle(const channel::Show& request) {
    if (isAskedFor())
        hide();
    else
        show(request);
}

void Center::hide() {
    asked_.reset();
    isUnanswered_ = false;
    if (failure_)
        failure_->hide();
    extension_.send(channel::Hide{});
}

void Center::quit() {
    if (std::exchange(isQuitting_, true))
        return;
    asked_.reset();
    stopWaiting();
    if (failure_)
        failure_->hide();
    if (quitting_)
        quitting_();
    if (extension_.isRunning())
        extension_.quit();
    else if (quitted_)
        quitted_();
}

void Center::extensionReady() {
    extension_.send(channel::Motion{isMotionReduced_});
    if (isAskedFor())
        extension_.send(*asked_);
}

// The place of a panel that has gone while the user wants to see it is taken by the failure's window, until
// there is another.
void Center::extensionEnded(bool wasAsked) {
    policy_.ended(now());
    const bool isRestarting = std::exchange(isRestarting_, false);
    if (isQuitting_) {
        if (quitted_)
            quitted_();
        return;
    }
    // A request that came while it died, and that it did not take any more, is for the next one.
    if (std::exchange(isUnanswered_, false) || isRestarting) {
        startExtension();
        return;
    }
    if (wasAsked) {
        startAt(policy_.nextStartAfterChange(now()));
        return;
    }
    startAt(policy_.nextStart());
    changes_.watch([this] { startAt(policy_.nextStartAfterChange(now() + settling)); });
    if (isAskedFor() && !isFailureShown())
        showFailure();
}

// The earlier of two moments counts.
void Center::startAt(RestartPolicy::Duration moment) {
    const auto wait = std::max(std::chrono::ceil<std::chrono::milliseconds>(moment - now()), {});
    if (!nextStart_.isActive() || wait < nextStart_.remainingTimeAsDuration())
        nextStart_.start(wait);
}

void Center::showFailure() {
    if (!failure_) {
        failure_ = std::make_unique<FailureWindow>();
        failure_->setTryAgain([this] { startExtension(); });
        failure_->setDismissed([this] { hide(); });
    }
    failure_->open(QString::fromStdString(asked_->screen));
}

bool Center::hasJustClosed() const {
    return closedAt_ && now() - *closedAt_ < longestClick;
}

void Center::setReducedMotion(bool isReduced) {
    isMotionReduced_ = isReduced;
    extension_.send(channel::Motion{isReduced});
}

void Center::setAccessibilityBus(const QString& address) {
    extension_.setAccessibilityBus(address);
    startsAnewWhenHidden_ = extension_.isRunning();
    startAnewIfHidden();
}

void Center::restart() {
    if (isRestarting_ || !restarts_.take(now()))
        return;
    isRestarting_ = true;
    extension_.quit();
}

void Center::startAnewIfHidden() {
    if (!startsAnewWhenHidden_ || isAskedFor() || isPending_)
        return;
    startsAnewWhenHidden_ = false;
    extension_.quit();
}

void Center::take(const channel::FromExtension& message) {
    if (const auto* url = std::get_if<channel::OpenUrl>(&message)) {
        const QString text = QString::fromStdString(url->url);
        if (model::isHostUrl(text) && openings_.take(now()))
            platform::Workspace::openUrl(text);
    } else if (const auto* counts = std::get_if<channel::Counts>(&message)) {
        if (countsChanged_)
            countsChanged_(*counts);
    } else if (std::holds_alternative<channel::Shown>(message)) {
        isUnanswered_ = false;
        if (!asked_) // it was asked for while it closed
            asked_ = lastAsked_;
        if (failure_)
            failure_->hide();
    } else if (std::holds_alternative<channel::Restart>(message)) {
        restart();
    } else if (std::holds_alternative<channel::Closed>(message)) {
        if (isRestarting_)
            return;
        if (std::exchange(asked_, std::nullopt))
            closedAt_ = now();
        startAnewIfHidden();
    } else if (const auto* pending = std::get_if<channel::Pending>(&message)) {
        isPending_ = pending->isPending;
        startAnewIfHidden();
    } else if (std::holds_alternative<channel::FindSources>(message)) {
        if (findSources_)
            findSources_();
    } else if (const auto* chosen = std::get_if<channel::ConnectSource>(&message)) {
        if (connectSource_)
            connectSource_(chosen->number);
    }
}

} // namespace center
