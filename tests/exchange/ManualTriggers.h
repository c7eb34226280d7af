#pragma once

#include "exchange/LoadTriggers.h"
#include "support/ManualWatches.h"

#include <memory>
#include <utility>

using support::ManualAlarm;
using support::ManualWatcher;

// Triggers with a watcher and an alarm that live as long as they do.
struct ManualTriggers {
    ManualTriggers() {
        auto ownWatcher = std::make_unique<ManualWatcher>();
        auto ownAlarm = std::make_unique<ManualAlarm>();
        watcher = ownWatcher.get();
        alarm = ownAlarm.get();
        triggers = std::make_unique<exchange::LoadTriggers>(std::move(ownWatcher), std::move(ownAlarm));
    }

    std::unique_ptr<exchange::LoadTriggers> triggers;
    ManualWatcher* watcher;
    ManualAlarm* alarm;
};
