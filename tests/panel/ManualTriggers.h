#pragma once

#include "panel/LoadTriggers.h"

#include <memory>
#include <utility>

// A watcher and an alarm that tell what a test has them tell.
class ManualWatcher final : public platform::PathWatcher {
public:
    void watch(const Paths& newPaths) override {
        paths = newPaths;
        ++followed;
    }
    using PathWatcher::tell;

    Paths paths;
    int followed = 0;
};

class ManualAlarm final : public platform::WallClockAlarm {
public:
    void setMoment(double newMoment) override { moment = newMoment; }
    using WallClockAlarm::ring;

    double moment = 0;
};

// Triggers with such a watcher and alarm, which live as long as the triggers.
struct ManualTriggers {
    ManualTriggers() {
        auto ownWatcher = std::make_unique<ManualWatcher>();
        auto ownAlarm = std::make_unique<ManualAlarm>();
        watcher = ownWatcher.get();
        alarm = ownAlarm.get();
        triggers = std::make_unique<panel::LoadTriggers>(std::move(ownWatcher), std::move(ownAlarm));
    }

    std::unique_ptr<panel::LoadTriggers> triggers;
    ManualWatcher* watcher;
    ManualAlarm* alarm;
};
