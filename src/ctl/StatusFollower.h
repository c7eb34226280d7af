#pragma once

#include "ctl/Report.h"
#include "ctl/StatusText.h"
#include "exchange/LoadTriggers.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace ctl {

// Prints the counts of the panel's list, and again each time they have changed: the host application has
// written, a transaction falls due, a new day starts, the clock was set, the zone is another. A fault of the
// list is said once on standard error, and the counts are unknown until it is mended. Main thread only.
class StatusFollower final {
public:
    StatusFollower(std::unique_ptr<platform::PathWatcher> watcher,
                   std::unique_ptr<platform::WallClockAlarm> alarm, const StatusText& text, Streams& streams);

    // Called before each reading; nothing is read where it returns false.
    void setMayRead(std::function<bool()> mayRead) { mayRead_ = std::move(mayRead); }
    // Called when standard output cannot be written.
    void setOutputLost(std::function<void()> handler) { outputLost_ = std::move(handler); }

    // Reads the list and follows it from then on.
    void look();

    // Prints what is not printed already.
    void print(const CountsReading& reading);

private:
    exchange::LoadTriggers triggers_;
    const StatusText& text_;
    Streams& streams_;
    std::function<bool()> mayRead_;
    std::function<void()> outputLost_;
    std::string line_;  // printed last
    std::string fault_; // said last
};

// Follows the list of the real container until SIGTERM, SIGINT or SIGHUP, or until whoever reads standard
// output is gone. Nothing is read before there is a container, to which the process then confines itself; it
// fails where another one takes its place. Returns the exit status.
[[nodiscard]] int followStatus(const StatusText& text, Streams& streams);

} // namespace ctl
