#include "ctl/StatusFollower.h"

#include "ctl/Confinement.h"
#include "ctl/Host.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/confinement/HeldPlace.h"
#include "platform/storage/InotifyWatcher.h"
#include "platform/system/CurrentTimeZone.h"
#include "platform/system/TerminationSignals.h"
#include "platform/system/TimerAlarm.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <optional>
#include <ostream>
#include <unistd.h>

namespace ctl {

StatusFollower::StatusFollower(std::unique_ptr<platform::PathWatcher> watcher,
                               std::unique_ptr<platform::WallClockAlarm> alarm, const StatusText& text,
                               Streams& streams)
    : triggers_(std::move(watcher), std::move(alarm))
    , text_(text)
    , streams_(streams) {
    triggers_.setLoadNeeded([this] { look(); });
}

void StatusFollower::look() {
    if (mayRead_ && !mayRead_())
        return;
    triggers_.listWillLoad();
    const CountsReading reading = readCounts();
    triggers_.listDidLoad(reading.transactions);
    print(reading);
}

void StatusFollower::print(const CountsReading& reading) {
    const std::string fault = reading.fault ? reading.fault->file + ": " + reading.fault->sentence : "";
    if (std::exchange(fault_, fault) != fault && reading.fault)
        (void)failed(streams_, reading.fault->file, reading.fault->sentence);
    const std::string line = text_.line(reading.counts);
    if (std::exchange(line_, line) == line)
        return;
    streams_.out << line << std::endl;
    if (!streams_.out && outputLost_)
        outputLost_();
}

namespace {

// Confines the process as soon as there is a container. Until then nothing is read, so that a host
// application that is installed later is followed all the same.
class ConfinedFollower final {
public:
    ConfinedFollower(const StatusText& text, Streams& streams)
        : streams_(streams)
        , follower_(std::make_unique<platform::InotifyWatcher>(), std::make_unique<platform::TimerAlarm>(),
                    text, streams) {
        follower_.setMayRead([this] { return mayRead(); });
        follower_.setOutputLost([] { QCoreApplication::exit(Done); }); // run() says so
        coming_.setChanged([this](platform::PathWatcher::Change) { follower_.look(); });
    }

    void begin() { follower_.look(); }

private:
    bool mayRead() {
        if (hasLandlock_ && container_ && container_->isAnother())
            return end(containerPath());
        if (hasLandlock_ && zoneFile_ && zoneFile_->isOutOfReach())
            return end(platform::currentTimeZoneFile());
        if (container_)
            return true;
        coming_.watch({{containerPath()}, {}});
        if (!hasContainer()) {
            follower_.print({TransactionCounts(), {}, {}});
            return false;
        }
        coming_.watch({});
        container_.emplace(containerPath());
        zoneFile_.emplace(platform::currentTimeZoneFile());
        if (confine(streams_, {{containerPath()}, {}}))
            return true;
        QCoreApplication::exit(Failed);
        return false;
    }

    bool end(const std::string& place) {
        (void)failed(streams_, place, "another has taken its place, which this process may not read");
        QCoreApplication::exit(Failed);
        return false;
    }

    Streams& streams_;
    StatusFollower follower_;
    platform::InotifyWatcher coming_;                    // tells of a container
    bool hasLandlock_ = platform::landlockVersion() > 0; // which a confined process cannot ask
    std::optional<platform::HeldPlace> container_;
    std::optional<platform::HeldPlace> zoneFile_;
};

} // namespace

int followStatus(const StatusText& text, Streams& streams) {
    int count = 1;
    char name[] = "korvel-todayctl";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const platform::TerminationSignals signals([] { QCoreApplication::exit(Done); });
    // Tells nothing but that the other end of a pipe is closed.
    QSocketNotifier reader(STDOUT_FILENO, QSocketNotifier::Exception);
    QObject::connect(&reader, &QSocketNotifier::activated, &reader, [] { QCoreApplication::exit(Done); });
    ConfinedFollower follower(text, streams);
    QMetaObject::invokeMethod(
        &reader, [&] { follower.begin(); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

} // namespace ctl
