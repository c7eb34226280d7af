#pragma once

namespace controls {

// Makes "TodayActionSheetView" known to platform::InterfaceFile. Calling it again changes nothing.
void registerActionSheetInterfaceFile();

} // namespace controls
