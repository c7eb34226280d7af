#pragma once

namespace controller {

// Registers all interface files of the widget with platform::InterfaceFile. Further calls have no effect.
void registerWidgetInterfaceFiles();

} // namespace controller
