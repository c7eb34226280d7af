#include "center/BridgeUpdates.h"

#include "center/BaseFolders.h"
#include "model/GroupIdentifiers.h"
#include "platform/storage/Files.h"
#include "platform/storage/GroupContainers.h"
#include "platform/system/Clock.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/MainQueue.h"
#include "platform/system/WholeSeconds.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <limits>
#include <string_view>
#include <utility>

namespace center {

using namespace std::chrono_literals;

namespace {

constexpr auto settling = 200ms; // a program that saves moves the old file away first

std::string inContainer(std::string_view path) {
    return platform::pathByAppending(
        platform::GroupContainers::containerPath(std::string(fullEditionGroupIdentifier)), path);
}

// These belong to korvel-today-bridge (docs/bridge.md).
std::string configurationFile() {
    return platform::pathByAppending(configFolder(), "korvel-today/bridge.json");
}
std::string actionLog() {
    return inContainer("bridge/actions.xml");
}

} // namespace

BridgeUpdates::BridgeUpdates(BridgeCall call, std::unique_ptr<platform::PathWatcher> watcher,
                             std::unique_ptr<platform::WallClockAlarm> alarm)
    : call_(std::move(call))
    , watcher_(std::move(watcher))
    , alarm_(std::move(alarm)) {
    watcher_->setChanged([this](platform::PathWatcher::Change) { changed(); });
    alarm_->setRung([this] {
        published_.clear(); // of another day
        lookAtFiles();
    });
    watchFiles();
    setAlarm();
    if (isUsed())
        askForStatus();
}

BridgeUpdates::~BridgeUpdates() = default;

platform::PathWatcher::Paths BridgeUpdates::paths() const {
    platform::PathWatcher::Paths paths{{configurationFile(), actionLog(), platform::currentTimeZoneFile()},
                                       {}};
    paths.files.insert(paths.files.end(), financeFiles_.begin(), financeFiles_.end());
    return paths;
}

std::vector<platform::FileVersion> BridgeUpdates::versions() const {
    std::vector<platform::FileVersion> versions;
    for (const std::string& path : paths().files)
        versions.push_back(platform::FileVersion::at(path));
    return versions;
}

void BridgeUpdates::watchFiles() {
    watcher_->watch(paths());
}

void BridgeUpdates::changed() {
    if (std::exchange(isSettling_, true))
        return;
    platform::MainQueue::current().after(settling, [this, life = std::weak_ptr(life_)] {
        if (life.expired())
            return;
        isSettling_ = false;
        lookAtFiles();
    });
}

// The watches are in place before the files are looked at, so that a change in between is told again. An
// update that takes the action log changes that file too; the update that follows finds nothing to do.
void BridgeUpdates::lookAtFiles() {
    watchFiles();
    setAlarm();
    if (isUpdating_ || !isUsed())
        return;
    if (versions() != published_)
        update();
}

void BridgeUpdates::setAlarm() {
    const auto now = platform::wholeSeconds(platform::Clock::current().now());
    alarm_->setMoment(now ? static_cast<double>(platform::currentTimeZone().nextDateAfter(*now))
                          : std::numeric_limits<double>::infinity());
}

bool BridgeUpdates::isUsed() const {
    return platform::fileExists(configurationFile());
}

void BridgeUpdates::update(std::function<void(const BridgeResult&)> done) {
    isUpdating_ = true;
    published_ = versions();
    call_({QStringLiteral("update")}, std::move(done));
    askForStatus();
}

void BridgeUpdates::askForStatus() {
    isUpdating_ = true;
    call_({QStringLiteral("status"), QStringLiteral("--json")},
          [this](const BridgeResult& status) { takeStatus(status); });
}

// What has changed in the meantime, files that were not watched among it, has the next update.
void BridgeUpdates::takeStatus(const BridgeResult& status) {
    isUpdating_ = false;
    if (status.isDone) {
        std::vector<std::string> files;
        const QJsonObject root = QJsonDocument::fromJson(status.output).object();
        for (const QJsonValue& file : root[QLatin1String("files")].toArray()) {
            files.push_back(file[QLatin1String("path")].toString().toStdString());
            for (const QJsonValue& included : file[QLatin1String("includes")].toArray())
                files.push_back(included.toString().toStdString());
        }
        if (std::exchange(financeFiles_, files) != files)
            published_.clear();
    }
    lookAtFiles();
}

} // namespace center
