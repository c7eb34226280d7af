#pragma once

#include <chrono>
#include <deque>

namespace center {

// When the extension may be started again by itself after it has ended: after pauses that grow from a second
// to five minutes, and never more than five times in a minute or twenty times in an hour. A start that the
// user asks for is never refused, but counts. Moments are those of a steady clock.
class RestartPolicy final {
public:
    using Duration = std::chrono::nanoseconds;

    // The extension is started.
    void started(Duration now);
    // The extension, started before, has ended. One that has run for a minute begins with the shortest pause
    // again.
    void ended(Duration now);

    // When it may be started by itself. Never before the last end.
    [[nodiscard]] Duration nextStart() const;
    // When it may be started because something has changed: without the pause.
    [[nodiscard]] Duration nextStartAfterChange(Duration now) const;

private:
    [[nodiscard]] Duration allowedFrom(Duration moment) const;

    std::deque<Duration> starts_; // the last twenty
    Duration lastEnd_{0};
    int quickEnds_ = 0; // one after the other
};

} // namespace center
