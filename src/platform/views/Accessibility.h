#pragma once

namespace platform {

// Lets assistive programs see every View as its accessibleTraits say; hidden and wholly clipped views are
// left out. Called once by a program before it shows a window; costs nothing until an assistive program asks.
void installViewAccessibility();

} // namespace platform
