#pragma once

#include "bridge/plans/Plan.h"
#include "exchange/ExchangeTest.h"
#include "support/Environment.h"

#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// The container of exchange tests (10 March 2026, 15:00 UTC), and a home of the user's own in a temporary
// folder.
class BridgeTest : public exchange::ExchangeTest {
protected:
    BridgeTest();

    // Write and read files of that home.
    std::string writeHome(const std::string& name, std::string_view bytes) const;
    [[nodiscard]] std::string readHome(const std::string& name) const;
    [[nodiscard]] std::string homePath(const std::string& name) const { return scratch + "/home/" + name; }

private:
    support::EnvironmentVariable home_;
    support::EnvironmentVariable config_;
    support::EnvironmentVariable state_;
    support::EnvironmentVariable data_;
};

inline const std::string configurationName = ".config/korvel-today/bridge.json";
inline const std::string databaseName = ".local/state/korvel-today/bridge.sqlite";

[[nodiscard]] Day dayOf(std::string_view text); // of a sound text

// A monthly expense of 870.00 EUR with these nominal days, which are also those on which it is due.
[[nodiscard]] Plan planOf(std::string key, const std::vector<std::string>& days);

} // namespace bridge
