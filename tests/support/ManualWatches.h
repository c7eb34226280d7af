#pragma once

#include "platform/storage/PathWatcher.h"
#include "platform/system/WallClockAlarm.h"

// A watcher and an alarm that tell what a test has them tell.
namespace support {

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

} // namespace support
