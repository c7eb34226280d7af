#pragma once

namespace rows {

// Makes "TodayTableCellView" and "TodayAddTableCellView" known to platform::InterfaceFile. Calling it again
// changes nothing.
void registerRowInterfaceFiles();

} // namespace rows
