#pragma once

namespace platform {

// The variable with the session bus's address, and an address that leads nowhere. Without the variable, the
// library of the bus would look for one in the runtime folder, or start one.
inline constexpr const char* sessionBusVariable = "DBUS_SESSION_BUS_ADDRESS";
inline constexpr const char* addressOfNoBus = "unix:path=/dev/null";

} // namespace platform
