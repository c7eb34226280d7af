#pragma once

namespace controls {

// Registers "TodayActionSheetView" with platform::InterfaceFile. Further calls have no effect.
void registerActionSheetInterfaceFile();

} // namespace controls
