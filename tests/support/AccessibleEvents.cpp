#include "support/AccessibleEvents.h"

#include "platform/views/Accessibility.h"

#include <algorithm>

namespace support {

AccessibleEvents::AccessibleEvents() {
    platform::setAssistiveProgramsHandler([this](QAccessibleEvent& event) {
        Event told{event.type(), event.object(), {}};
        if (told.type == QAccessible::StateChanged)
            told.changed = static_cast<QAccessibleStateChangeEvent&>(event).changedStates();
        all_.push_back(told);
    });
}

AccessibleEvents::~AccessibleEvents() {
    platform::setAssistiveProgramsHandler(nullptr);
}

std::size_t AccessibleEvents::count(QAccessible::Event type, const QObject* object) const {
    return static_cast<std::size_t>(std::ranges::count_if(
        all_, [&](const Event& event) { return event.type == type && event.object == object; }));
}

} // namespace support
