#pragma once

#include <QAccessible>

#include <functional>

namespace platform {

// Lets assistive programs see every View as its accessibleTraits say; hidden and wholly clipped views are
// left out, and one of alpha 0 is there but invisible. A window that is no View is told as a window. Called
// once by a program before it shows a window; costs nothing until an assistive program asks.
void installViewAccessibility();

// Announces an event to assistive programs, if any are running. A handler replaces the toolkit for tests,
// since the toolkit sends nothing unless a desktop listens. An empty handler restores the toolkit.
void tellAssistivePrograms(QAccessibleEvent& event);
void setAssistiveProgramsHandler(std::function<void(QAccessibleEvent&)> handler);

} // namespace platform
