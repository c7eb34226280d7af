#pragma once

#include <QAccessible>

#include <vector>

namespace support {

// Records the events that views send to assistive programs.
class AccessibleEvents final {
public:
    struct Event {
        QAccessible::Event type;
        const QObject* object;
        QAccessible::State changed; // of a StateChanged
    };

    AccessibleEvents();
    ~AccessibleEvents();
    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    [[nodiscard]] const std::vector<Event>& all() const { return all_; }
    [[nodiscard]] std::size_t count(QAccessible::Event type, const QObject* object) const;

private:
    std::vector<Event> all_;
};

} // namespace support
