#pragma once

#include <QAccessible>

#include <functional>

namespace platform {

// Lets assistive programs see every View as its accessibleTraits say; hidden and wholly clipped views are
// left out, and one of alpha 0 is there but invisible. A window that is no View is told as a window. Called
// once by a program before it shows a window; costs nothing until an assistive program asks.
void installViewAccessibility();

// Tells assistive programs something unasked; nothing happens where there are none. A handler takes the
// toolkit's place, for tests: the toolkit sends nothing where no desktop listens. An empty one gives it back.
void tellAssistivePrograms(QAccessibleEvent& event);
void setAssistiveProgramsHandler(std::function<void(QAccessibleEvent&)> handler);

} // namespace platform
