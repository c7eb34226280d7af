#pragma once

namespace rows {

// Registers "TodayTableCellView" and "TodayAddTableCellView" with platform::InterfaceFile. Further calls have
// no effect.
void registerRowInterfaceFiles();

} // namespace rows
