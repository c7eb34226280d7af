#include "exchange/LoadTriggers.h"

#include "exchange/SharedFiles.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/OwnReplacements.h"
#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/MainQueue.h"
#include "platform/system/WholeSeconds.h"

#include <algorithm>
#include <limits>
#include <string>

namespace exchange {

using namespace std::chrono_literals;

namespace {

// A host writes several files, one after the other. The list is loaded when none has changed for so long, and
// in any case after so many rounds.
constexpr auto settling = 100ms;
constexpr int mostRounds = 10;

// When the first of these comes: a date after a moment, or the next day.
double nextMoment(double moment, const std::vector<TodayTransactionPtr>& transactions) {
    double next = std::numeric_limits<double>::infinity();
    if (const auto seconds = platform::wholeSeconds(moment))
        next = static_cast<double>(platform::currentTimeZone().nextDateAfter(*seconds));
    for (const TodayTransactionPtr& transaction : transactions)
        if (transaction->date >= moment)
            next = std::min(next, transaction->date);
    return next;
}

} // namespace

LoadTriggers::LoadTriggers(std::unique_ptr<platform::PathWatcher> watcher,
                           std::unique_ptr<platform::WallClockAlarm> alarm)
    : watcher_(std::move(watcher))
    , alarm_(std::move(alarm)) {
    watcher_->setChanged([this](platform::PathWatcher::Change change) { changed(change); });
    alarm_->setRung([this] { tell(); });
}

LoadTriggers::~LoadTriggers() = default;

// The versions are taken after the watches are in place and before the files are read: a change that comes
// later finds another version.
void LoadTriggers::listWillLoad() {
    paths_ = pathsOfList();
    paths_.files.push_back(platform::currentTimeZoneFile());
    // A container that comes is a list, even without a file in it.
    const std::string group(fullEditionGroupIdentifier);
    if (!platform::GroupContainers::containerForGroup(group))
        paths_.files.push_back(platform::GroupContainers::containerPath(group));
    watcher_->watch(paths_);
    known_ = versions();
    entriesHaveChanged_ = false;
    loadedAt_ = platform::Clock::current().now();
    isActive_ = true;
}

// Transactions beyond the shown count have their rows too, which come into view when others leave, so that
// all dates count.
void LoadTriggers::listDidLoad(const std::vector<TodayTransactionPtr>& transactions) {
    alarm_->setMoment(nextMoment(loadedAt_, transactions));
}

void LoadTriggers::stop() {
    isActive_ = false;
    watcher_->watch({});
    alarm_->setMoment(std::numeric_limits<double>::infinity());
}

void LoadTriggers::changed(platform::PathWatcher::Change change) {
    hasChanged_ = true;
    if (change == platform::PathWatcher::Change::Entry)
        entriesHaveChanged_ = true;
    if (!std::exchange(isSettling_, true))
        lookOnceSettled(mostRounds);
}

void LoadTriggers::lookOnceSettled(int rounds) {
    hasChanged_ = false;
    platform::MainQueue::current().after(settling, [this, rounds, life = std::weak_ptr(life_)] {
        if (life.expired())
            return;
        if (hasChanged_ && rounds > 1) {
            lookOnceSettled(rounds - 1);
            return;
        }
        isSettling_ = false;
        lookAtFiles();
    });
}

// The paths are followed anew first, since a folder may have come, and looked at afterwards.
void LoadTriggers::lookAtFiles() {
    if (!isActive_)
        return;
    watcher_->watch(paths_);
    const bool isTrue = isAsLoaded();
    if (!isTrue || entriesHaveChanged_)
        tell();
}

std::vector<platform::FileVersion> LoadTriggers::versions() const {
    std::vector<platform::FileVersion> found;
    for (const auto* paths : {&paths_.files, &paths_.folders})
        for (const std::string& path : *paths)
            found.push_back(platform::FileVersion::at(path));
    return found;
}

// A version that this process alone has made of the known one becomes the known one.
bool LoadTriggers::isAsLoaded() {
    const std::vector<platform::FileVersion> now = versions();
    const bool isTrue = std::ranges::equal(now, known_, [](const auto& version, const auto& known) {
        return version == known || platform::OwnReplacements::lead(known, version);
    });
    if (isTrue)
        known_ = now;
    return isTrue;
}

void LoadTriggers::tell() const {
    if (isActive_ && loadNeeded_)
        loadNeeded_();
}

} // namespace exchange
