#pragma once

namespace controller {

// Makes all of the widget's interface files known to platform::InterfaceFile. Calling it again changes
// nothing.
void registerWidgetInterfaceFiles();

} // namespace controller
